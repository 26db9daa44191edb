// SPDX-License-Identifier: MIT
#include "tests/doctor/DoctorFixture.h"

#include <cstdlib>

namespace {

class DisplayCheck : public support::DoctorFixture
{
protected:
    /// A machine on which the window can be shown.
    DisplayCheck()
    {
        for (const char* name : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_PLUGIN_PATH",
                                 "QT_QPA_PLATFORM_PLUGIN_PATH", "XDG_DATA_DIRS"}) {
            ::unsetenv(name);
        }
        ::setenv("PATH", "/usr/bin", 1);
        ::setenv("DISPLAY", ":0", 1);
        ::setenv("XDG_RUNTIME_DIR", "/run/user/1000", 1);
        for (const char* path : {"/usr/bin/QvVisaConfigure", "/tmp/.X11-unix/X0",
                                 "/usr/lib/x86_64-linux-gnu/qt5/plugins/platforms/libqxcb.so",
                                 "/usr/share/applications/" QVVISA_APPLICATION_ID ".desktop"}) {
            m_system.file(path, "");
        }
    }

    void remove(const char* path) const { std::filesystem::remove(m_system.path(path)); }
};

TEST_F(DisplayCheck, CompleteMachineIsOk)
{
    EXPECT_EQ(results("display"), "ok: The window can be shown (DISPLAY :0).\n");
    ::setenv("DISPLAY", ":0.1", 1);
    EXPECT_EQ(results("display"), "ok: The window can be shown (DISPLAY :0.1).\n");
    // Over the network; no socket is here.
    ::setenv("DISPLAY", "localhost:10.0", 1);
    EXPECT_EQ(results("display"), "ok: The window can be shown (DISPLAY localhost:10.0).\n");
}

TEST_F(DisplayCheck, MissingWindowIsNoted)
{
    remove("/usr/bin/QvVisaConfigure");
    EXPECT_EQ(results("display"), "note: The window, QvVisaConfigure, is not in PATH; qvvisa works "
                                  "alone.\n");
}

TEST_F(DisplayCheck, MissingDisplayIsNoted)
{
    ::unsetenv("DISPLAY");
    EXPECT_EQ(results("display"), "note: There is no display (DISPLAY and WAYLAND_DISPLAY are not "
                                  "set), so the window cannot be shown here; qvvisa needs none.\n");
}

TEST_F(DisplayCheck, DisplayWithoutItsSocketIsWarnedOf)
{
    remove("/tmp/.X11-unix/X0");
    EXPECT_EQ(results("display"),
              "warning: DISPLAY :0 leads to no display: /tmp/.X11-unix/X0 does not exist.\n");
    ::unsetenv("DISPLAY");
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_EQ(results("display"), "warning: WAYLAND_DISPLAY wayland-0 leads to no display: "
                                  "/run/user/1000/wayland-0 does not exist.\n");
}

TEST_F(DisplayCheck, MissingPlatformPluginIsAProblem)
{
    remove("/usr/lib/x86_64-linux-gnu/qt5/plugins/platforms/libqxcb.so");
    EXPECT_EQ(remedies("display"), "problem: Qt's platform plugin libqxcb.so was not found, so the "
                                   "window cannot be shown. -> Install the package libqt5gui5.\n");
    m_system.file("/opt/plugins/platforms/libqxcb.so", "");
    ::setenv("QT_PLUGIN_PATH", "/nowhere:/opt/plugins", 1);
    EXPECT_EQ(results("display"), "ok: The window can be shown (DISPLAY :0).\n");
}

TEST_F(DisplayCheck, WaylandNeedsItsOwnPlugin)
{
    ::unsetenv("DISPLAY");
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    m_system.file("/run/user/1000/wayland-0", "");
    EXPECT_EQ(results("display"), "problem: Qt's platform plugin libqwayland-generic.so was not "
                                  "found, so the window cannot be shown.\n");
}

TEST_F(DisplayCheck, PlatformThatShowsNothingIsWarnedOf)
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    EXPECT_EQ(results("display"),
              "warning: QT_QPA_PLATFORM is offscreen: the window is not shown on a display.\n");
}

TEST_F(DisplayCheck, MissingDesktopEntryIsNoted)
{
    remove("/usr/share/applications/" QVVISA_APPLICATION_ID ".desktop");
    EXPECT_EQ(results("display"),
              "ok: The window can be shown (DISPLAY :0).\n"
              "note: The desktop's menu does not show the window: "
              "applications/" QVVISA_APPLICATION_ID ".desktop is in none of its data folders.\n");
}

} // namespace
