// make_image IMAGE SCENE...: fills a volume that mkntfs has made. The scenes are names, links, data, marks,
// fragments and a number, which is how many plain files there are.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "scenes.h"

int main(int argc, char** argv) {
    using varnelo::tools::Scenes;
    if (argc < 3) {
        std::fprintf(stderr, "usage: make_image IMAGE SCENE...\n");
        return 2;
    }
    varnelo::tools::ImageWriter image(argv[1]);
    Scenes scenes(image);
    const struct {
        const char* name;
        void (Scenes::*make)();
    } known[] = {
        {"names", &Scenes::names},         {"links", &Scenes::links},   {"data", &Scenes::data},
        {"sparse", &Scenes::sparse},       {"pieces", &Scenes::pieces}, {"marks", &Scenes::marks},
        {"fragments", &Scenes::fragments},
    };
    for (int i = 2; i < argc; ++i) {
        bool made = false;
        for (const auto& scene : known) {
            if (std::strcmp(argv[i], scene.name) != 0) continue;
            (scenes.*scene.make)();
            made = true;
        }
        if (!made) scenes.crowd(static_cast<unsigned>(std::strtoul(argv[i], nullptr, 10)));
    }
    scenes.finish();
    return 0;
}
