#include "Scenes.h"

#include <cstdio>
#include <exception>

// palisor-demo [FOLDER]: plays the program that lies beside this one, or in FOLDER, on a desktop of
// its own. Ends with 0 when all that it tried was seen.

int main(int count, char** arguments) {
    namespace fs = std::filesystem;
    const fs::path own = fs::read_symlink("/proc/self/exe").parent_path();
    const fs::path programs = count > 1 ? fs::absolute(arguments[1]) : own;
    const fs::path pictures = own.parent_path() / "demo";
    try {
        demo::Stage stage(programs, pictures);
        std::printf("%s, two monitors, openbox, picom; pictures in %s\n",
                    stage.desktop.kindName().c_str(), pictures.c_str());
        for (const auto scene :
             {demo::startsAndDarkens, demo::holdsTheCursor, demo::catchesClicks,
              demo::letsGoWhileTheKeysAreHeld, demo::letsAPushThrough, demo::leavesNothingBehind})
            scene(stage);
        if (stage.allSeen()) return 0;
        std::printf("The program wrote:\n%s", stage.program->errors().c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "palisor-demo: %s\n", error.what());
    }
    return 1;
}
