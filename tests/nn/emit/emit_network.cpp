// Writes the network with every layer type as source; the test program compiles it.

#include <cstdio>

#include "EveryLayer.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "emit_network: one file name expected\n");
        return 2;
    }
    try {
        NnDetector network = testing_support::everyLayerNetwork();
        network.setTrainLog("loss 0.25\n\nlast line");
        network.saveToCpp(std::string(argv[1]));
    } catch (const char*) {
        std::fprintf(stderr, "emit_network: cannot write \"%s\"\n", argv[1]);
        return 1;
    }
    return 0;
}
