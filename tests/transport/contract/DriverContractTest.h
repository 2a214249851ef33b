#pragma once

#include "DriverRig.h"

#include <gtest/gtest.h>

namespace tarvix::test {

// The same cases for every backend: what MidiDriver.h promises, seen from
// the program's side of a real cable (or the nearest thing the backend has).
class DriverContractTest : public ::testing::TestWithParam<RigFactory> {
protected:
    void SetUp() override;
    void TearDown() override;

    std::unique_ptr<DriverRig> rig;
};

// Cases are named after the backend: "Jack/DriverContractTest.X/JACK".
inline std::string RigName(const ::testing::TestParamInfo<RigFactory>& rig)
{
    return rig.param.name;
}

} // namespace tarvix::test
