// kelp-image: packs application images and shows what is in them.
#include <cstdio>

int main(int argc, char **argv) {
    (void)argv;
    std::fprintf(stderr, "usage: kelp-image pack ... | kelp-image info FILE\n");
    return argc > 1 ? 1 : 2;
}
