// SPDX-License-Identifier: MIT
#include "doctor/MachineChecks.h"

#include "config/Encoding.h"
#include "doctor/CheckResult.h"
#include "doctor/Machine.h"
#include "doctor/Wording.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace QvVisa {

namespace {

constexpr const char* s_windowProgram = "QvVisaConfigure";
#ifdef __APPLE__
constexpr bool s_needsDisplayServer = false;
#else
constexpr bool s_needsDisplayServer = true;
#endif

std::string environmentVariable(const char* name)
{
    // Nothing in the program changes the environment.
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

/// The parts of a list like that in PATH, without empty ones.
std::vector<std::string> partsOf(const std::string& list)
{
    std::vector<std::string> parts;
    std::size_t begin = 0;
    while (begin < list.size()) {
        const std::size_t end = std::min(list.find(':', begin), list.size());
        if (end > begin) {
            parts.push_back(list.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return parts;
}

bool isInOneOf(const visa::SystemFiles& files, const std::vector<std::string>& folders,
               const std::string& name)
{
    return std::any_of(folders.begin(), folders.end(), [&](const std::string& folder) {
        return files.exists(folder + '/' + name);
    });
}

/// The folders in which Qt looks for platform plugins.
std::vector<std::string> pluginFolders(const visa::SystemFiles& files)
{
    std::vector<std::string> folders = partsOf(environmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH"));
    for (const std::string& folder : partsOf(environmentVariable("QT_PLUGIN_PATH"))) {
        folders.push_back(folder + "/platforms");
    }
    std::vector<std::string> libraries{"/usr/lib", "/usr/lib64", "/usr/local/lib"};
    // Debian has a folder for each kind of processor.
    for (const std::string& name : files.names("/usr/lib")) {
        libraries.push_back("/usr/lib/" + name);
    }
    for (const std::string& library : libraries) {
        for (const char* plugins : {"/qt5/plugins/platforms", "/qt/plugins/platforms"}) {
            folders.push_back(library + plugins);
        }
    }
    return folders;
}

/// The socket of a display on this machine; nothing for a display on another.
std::optional<std::string> socketOfDisplay(const std::string& display)
{
    if (display.empty() || display.front() != ':') {
        return std::nullopt;
    }
    const std::string number = display.substr(1, display.find('.') - 1);
    return "/tmp/.X11-unix/X" + number;
}

std::optional<std::string> socketOfWayland(const std::string& display)
{
    const std::string folder = environmentVariable("XDG_RUNTIME_DIR");
    if (display.empty() || (display.front() != '/' && folder.empty())) {
        return std::nullopt;
    }
    return display.front() == '/' ? display : folder + '/' + display;
}

/// The display of the environment, and the plugin that shows windows on it.
struct Platform
{
    std::string plugin;                ///< "xcb", "wayland"; empty without a display.
    std::string name;                  ///< "DISPLAY :0".
    std::optional<std::string> socket; ///< None for a display on another machine.
};

Platform platformOfEnvironment()
{
    const std::string x11 = environmentVariable("DISPLAY");
    const std::string wayland = environmentVariable("WAYLAND_DISPLAY");
    // Qt 5 takes X11 where both are there.
    if (!x11.empty()) {
        return {"xcb", "DISPLAY " + pathToUtf8(x11), socketOfDisplay(x11)};
    }
    if (!wayland.empty()) {
        return {"wayland", "WAYLAND_DISPLAY " + pathToUtf8(wayland), socketOfWayland(wayland)};
    }
    return {};
}

std::string pluginFile(const std::string& plugin)
{
    return plugin == "wayland" ? "libqwayland-generic.so" : "libq" + plugin + ".so";
}

/// Reports whether the window can be shown; true when it can.
bool checkPlatform(const visa::SystemFiles& files, CheckReport& report)
{
    Platform platform = platformOfEnvironment();
    const std::string wanted = environmentVariable("QT_QPA_PLATFORM");
    const std::string named = wanted.substr(0, wanted.find_first_of(":;"));
    if (named == "offscreen" || named == "minimal" || named == "vnc") {
        report.warning("QT_QPA_PLATFORM is " + pathToUtf8(wanted) +
                           ": the window is not shown on a display.",
                       "Unset QT_QPA_PLATFORM.");
        return false;
    }
    if (platform.plugin.empty()) {
        report.note("There is no display (DISPLAY and WAYLAND_DISPLAY are not set), so the window "
                    "cannot be shown here; qvvisa needs none.",
                    "From another machine: ssh -X shows the window there.");
        return false;
    }
    if (platform.socket && !files.exists(*platform.socket)) {
        report.warning(platform.name + " leads to no display: " + pathToUtf8(*platform.socket) +
                           " does not exist.",
                       "Start the window from the desktop's own session.");
        return false;
    }
    const std::string plugin = named.empty() ? platform.plugin : named;
    if (!isInOneOf(files, pluginFolders(files), pluginFile(plugin))) {
        report.problem("Qt's platform plugin " + pluginFile(plugin) +
                           " was not found, so the window cannot be shown.",
                       plugin == "wayland" ? "Install the package qtwayland5."
                                           : "Install the package libqt5gui5.");
        return false;
    }
    report.ok("The window can be shown (" + platform.name + ").");
    return true;
}

void checkDesktopEntry(const visa::SystemFiles& files, CheckReport& report)
{
    std::string list = environmentVariable("XDG_DATA_DIRS");
    const std::string home = environmentVariable("HOME");
    list = (list.empty() ? "/usr/local/share:/usr/share" : list) + ':' + home + "/.local/share";
    const std::string entry = std::string("applications/") + QVVISA_APPLICATION_ID + ".desktop";
    if (!isInOneOf(files, partsOf(list), entry)) {
        report.note("The desktop's menu does not show the window: " + entry +
                        " is in none of its data folders.",
                    "Install the package qvvisaconfigure.");
    }
}

} // namespace

void checkDisplay(const Machine& machine, CheckReport& report)
{
    if (!s_needsDisplayServer) {
        report.ok("The window needs no display server here.");
        return;
    }
    if (!isInOneOf(machine.files, partsOf(environmentVariable("PATH")), s_windowProgram)) {
        report.note("The window, QvVisaConfigure, is not in PATH; qvvisa works alone.");
        return;
    }
    if (checkPlatform(machine.files, report)) {
        checkDesktopEntry(machine.files, report);
    }
}

} // namespace QvVisa
