#include <gtest/gtest.h>

#include <cstdlib>
#include <mutex>

#include "tavo_hal/src/platform/InstallationDirectory.h"
#include "tavo_hal/src/platform/SharedLibrary.h"
#include "tavo_hal/src/platform/SpinLockVariableGuard.h"

namespace {

using tavo::platform::directoryFromEnvironment;
using tavo::platform::directoryFromFilePath;

TEST(LoaderPathTest, InnermostMarkerFolderWins) {
    const std::pair<const char*, const char*> found[] = {
        {"/opt/rt5/Hardware Applets/fabrixIV/libQuillon.so",  "/opt/rt5"                     },
        {"/opt/rt5/lib/libQuillon.so",                        "/opt/rt5"                     },
        {"/opt/rt5/lib64/libQuillon.so",                      "/opt/rt5"                     },
        {"/opt/rt5/bin/a/b/c/libQuillon.so",                  "/opt/rt5"                     },
        {"/opt/rt5/dll/libQuillon.so",                        "/opt/rt5"                     },
        {"/opt/LIB64/libQuillon.so",                          "/opt"                         },
        {"/opt/hardware applets/x/libQuillon.so",             "/opt"                         },
        {"/opt/HARDWARE APPLETS/x/libQuillon.so",             "/opt"                         },
        {"/usr/lib/rt5/bin/libQuillon.so",                    "/usr/lib/rt5"                 },
        {"/usr/lib/rt5/Hardware Applets/lib/x/libQuillon.so", "/usr/lib/rt5/Hardware Applets"},
        {"/opt//rt5///lib//libQuillon.so",                    "/opt//rt5"                    },
        {"/opt/rt5/lib///board//libQuillon.so",               "/opt/rt5"                     },
        {"/lib/libQuillon.so",                                ""                             },
        {"//lib/libQuillon.so",                               ""                             },
        {"../stage/lib/libQuillon.so",                        "../stage"                     },
        {"lib/libQuillon.so",                                 "."                            },
        {"./lib/libQuillon.so",                               "."                            },
    };
    for (const auto& [file, directory] : found) EXPECT_EQ(directoryFromFilePath(file), directory) << file;
}

TEST(LoaderPathTest, PathsWithoutMarkerFolderGiveNothing) {
    for (const char* file :
         {"", "libQuillon.so", "/libQuillon.so", "/opt/rt5/libQuillon.so", "/opt/library/libQuillon.so",
          "/opt/lib32/libQuillon.so", "/opt/Hardware/Applets/libQuillon.so", "/opt/li/b/libQuillon.so", "/opt/rt5/lib",
          "/opt/rt5/bin", "bin", "/", "//", "/opt/rt5/ lib/x.so", "/opt/xlib/x.so"}) {
        EXPECT_EQ(directoryFromFilePath(file), std::nullopt) << file;
    }
}

class LoaderEnvironmentTest : public testing::Test {
protected:
    LoaderEnvironmentTest() { forget(); }
    ~LoaderEnvironmentTest() override { forget(); }
    static void forget() {
        unsetenv("TAVODIR5_32");
        unsetenv("TAVODIR5");
    }
};

TEST_F(LoaderEnvironmentTest, NamesTheDirectoryWithoutTrailingSlashes) {
    EXPECT_EQ(directoryFromEnvironment(), std::nullopt);
    for (const auto& [value, directory] : {
             std::pair{"/opt/rt5",    "/opt/rt5"},
             {"/opt/rt5///", "/opt/rt5"},
             {"/",           "/"       },
             {"////",        "/"       },
             {"",            ""        },
             {"rt5/",        "rt5"     }
    }) {
        setenv("TAVODIR5", value, 1);
        EXPECT_EQ(directoryFromEnvironment(), directory) << value;
    }
}

}  // namespace
