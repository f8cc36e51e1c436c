#include "platform/sway/undo/UndoFile.h"
#include "testing/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using namespace platform::sway;

TEST(SwayUndoFile, IsReadAsItWasWritten) {
    const Undoing undoing{"/run/x.sock", {"input * map_to_output A", "seat * hide_cursor 0"}};
    EXPECT_EQ(undoingFrom(toText(undoing)), undoing);
}

TEST(SwayUndoFile, RunsNothingThatItCannotHaveWritten) {
    EXPECT_EQ(undoingFrom("s\nexec rm\nunbindcode 37\n\ninput\nseat * hide_cur"),
              (Undoing{"s", {"unbindcode 37"}}));
    EXPECT_EQ(undoingFrom(""), Undoing{});
    EXPECT_EQ(undoingFrom("s"), Undoing{});
}

TEST(SwayUndoFile, StaysWhereItsCompositorDoesNotAnswerAndGoesWhereThatHasGone) {
    const testing_support::TempFolder folder;
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder.path("socket");
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 1), 0);
    folder.write("sway-undo-1", path + "\nseat * hide_cursor 0\n");
    EXPECT_EQ(undoLeft(folder.path()), Undone::silent);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"socket", "sway-undo-1"}));
    ::close(listener);
    EXPECT_EQ(undoLeft(folder.path()), Undone::outlived);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"socket"});
    EXPECT_EQ(undoLeft(folder.path()), Undone::nothing);
}

TEST(SwayUndoFile, IsLeftAloneWhileItsOwnerLives) {
    const testing_support::TempFolder folder;
    folder.write("sway-undo-1", "/nowhere\nseat * hide_cursor 0\n");
    const int owner = ::open(folder.path("sway-undo-1").c_str(), O_RDONLY);
    ASSERT_EQ(::flock(owner, LOCK_EX), 0);
    EXPECT_EQ(undoLeft(folder.path()), Undone::nothing);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"sway-undo-1"});
    ::close(owner);
    EXPECT_EQ(undoLeft(folder.path()), Undone::outlived);
    EXPECT_TRUE(folder.names().empty());
}

} // namespace
