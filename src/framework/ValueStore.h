#pragma once

#include <QString>

#include <cstdint>

namespace tarvix {

// The per-user key/value store a window helper keeps its values in. Values
// live under the program's key or a sub-key of it. A read that fails leaves
// the output alone and returns false; writes are best effort.
class IValueStore {
public:
    virtual ~IValueStore() = default;

    virtual bool ReadDword(const QString& subKey, const QString& name, std::uint32_t& value) = 0;
    virtual bool ReadString(const QString& subKey, const QString& name, QString& value) = 0;
    virtual void WriteDword(const QString& subKey, const QString& name, std::uint32_t value) = 0;
    virtual void WriteString(const QString& subKey, const QString& name, const QString& value) = 0;
    virtual void DeleteValue(const QString& subKey, const QString& name) = 0;
};

} // namespace tarvix
