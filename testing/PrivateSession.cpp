#include "testing/PrivateSession.h"

#include <cstdlib>
#include <filesystem>
#include <grp.h>
#include <linux/capability.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace support {

namespace fs = std::filesystem;

namespace {

constexpr uid_t nobody = 65534;

void handOver(const std::string& path) {
    if (chown(path.c_str(), nobody, nobody) != 0)
        throw std::runtime_error("a folder cannot be handed over");
}

/// Of root's rights, kept over the change of the user, only these go on; to what is started, too.
void keepRights(unsigned rights) {
    __user_cap_header_struct own{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct kept[_LINUX_CAPABILITY_U32S_3] = {{rights, rights, rights}, {}};
    if (syscall(SYS_capset, &own, kept) != 0)
        throw std::runtime_error("the test cannot give up its rights");
}

} // namespace

PrivateSession::PrivateSession(const Environment& more, SystemBus system) : variables(more) {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    for (const std::string& part : {configFolder(), runtimeFolder()})
        fs::create_directories(part);
    fs::permissions(runtimeFolder(), fs::perms::owner_all);
    const char* const path = std::getenv("PATH");
    variables.insert({{"PATH", path ? path : "/usr/bin:/bin"},
                      {"HOME", folder.path("home")},
                      {"XDG_CONFIG_HOME", configFolder()},
                      {"XDG_RUNTIME_DIR", runtimeFolder()},
                      {"XDG_SESSION_TYPE", "wayland"},
                      {"LANG", "C.UTF-8"},
                      {"NO_AT_BRIDGE", "1"}});
    if (system == SystemBus::own) {
        systemBus = std::make_unique<SessionBus>(variables);
        variables["DBUS_SYSTEM_BUS_ADDRESS"] = systemBus->address();
    }
    bus = std::make_unique<SessionBus>(variables);
    variables["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
}

PrivateSession::~PrivateSession() {
    ProcessSweep rest("XDG_RUNTIME_DIR=" + runtimeFolder(), server ? server->pid() : -1);
    bus.reset();
    systemBus.reset();
    rest.end();
    server.reset();
}

std::unique_ptr<ChildProcess>
PrivateSession::spawn(const std::string& command, const std::vector<std::string>& arguments) const {
    std::vector<std::string> whole{command};
    whole.insert(whole.end(), arguments.begin(), arguments.end());
    return std::make_unique<ChildProcess>(ChildProcess::Start{whole, variables, -1, SIGKILL});
}

std::vector<std::string> asAUser(std::vector<std::string> command, const std::string& folder) {
    if (getuid() != 0) return command;
    handOver(folder);
    for (const auto& part : fs::recursive_directory_iterator(folder))
        handOver(part.path());
    const std::string id = std::to_string(nobody);
    const std::vector<std::string> change{"setpriv",        "--reuid=" + id,    "--regid=" + id,
                                          "--clear-groups", "--pdeathsig=TERM", "--"};
    command.insert(command.begin(), change.begin(), change.end());
    return command;
}

void becomeAUser() {
    if (getuid() != 0) return;
    const fs::path test = fs::read_symlink("/proc/self/exe");
    prctl(PR_SET_KEEPCAPS, 1);
    if (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)
        throw std::runtime_error("the test cannot give up its rights");
    // A tree in root's own folder is closed to everyone else.
    if (access(test.c_str(), X_OK) == 0) {
        keepRights(0);
    } else {
        keepRights(1U << CAP_DAC_READ_SEARCH);
        if (prctl(PR_CAP_AMBIENT, PR_CAP_AMBIENT_RAISE, CAP_DAC_READ_SEARCH, 0, 0) != 0)
            throw std::runtime_error("the user of the tests cannot look into " + test.string());
    }
    // It looks at processes of its own, and they at it.
    prctl(PR_SET_DUMPABLE, 1);
}

} // namespace support
