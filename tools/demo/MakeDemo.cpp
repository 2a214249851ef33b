// Writes the demo document as a .syx dump: tarvix-make-demo OUT.syx
#include "demo/DemoDocument.h"

#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("Usage: tarvix-make-demo OUT.syx\n", stderr);
        return 2;
    }
    tarvix::CMmt8Memory memory;
    tarvix::demo::BuildDemoDocument(memory);
    std::string error;
    if (!tarvix::SaveSyxFile(memory, argv[1], error)) {
        std::fputs(error.c_str(), stderr);
        return 1;
    }
    return 0;
}
