#include "platform/wayland/keys/Workspaces.h"

#include <gtest/gtest.h>

using platform::wayland::neighbour;
using platform::wayland::WorkspacePlace;

namespace {

constexpr bool shown = true, hidden = true;
constexpr std::nullopt_t none = std::nullopt;

TEST(Workspaces, FollowEachOtherInTheirOrderWhereTheyHaveNoCoordinates) {
    const WorkspacePlace all[] = {{}, {{}, shown}, {{}}};
    EXPECT_EQ(neighbour(all, 1), 2);
    EXPECT_EQ(neighbour(all, -1), 0);
}

TEST(Workspaces, EndAtTheFirstAndAtTheLastOne) {
    const WorkspacePlace first[] = {{{}, shown}, {}}, last[] = {{}, {{}, shown}};
    EXPECT_EQ(neighbour(first, -1), none);
    EXPECT_EQ(neighbour(last, 1), none);
    const WorkspacePlace row[] = {{{0}, shown}, {{1}}};
    EXPECT_EQ(neighbour(row, -1), none);
}

TEST(Workspaces, LieByTheirCoordinatesWhateverTheirOrder) {
    const WorkspacePlace all[] = {{{2}}, {{0}}, {{1}, shown}, {{3}}};
    EXPECT_EQ(neighbour(all, 1), 0);
    EXPECT_EQ(neighbour(all, -1), 1);
}

TEST(Workspaces, OfAGridAreThoseOfTheSameRow) {
    const WorkspacePlace grid[] = {{{0, 0}}, {{1, 0}}, {{0, 1}, shown}, {{1, 1}}};
    EXPECT_EQ(neighbour(grid, 1), 3);
    EXPECT_EQ(neighbour(grid, -1), none);
}

TEST(Workspaces, ThatAreHiddenAreLeftOut) {
    const WorkspacePlace listed[] = {{{}, shown}, {{}, !shown, hidden}, {}};
    EXPECT_EQ(neighbour(listed, 1), 2);
    const WorkspacePlace row[] = {{{0}, shown}, {{1}, !shown, hidden}, {{2}}};
    EXPECT_EQ(neighbour(row, 1), 2);
}

TEST(Workspaces, LeadNowhereWhereNoneIsShown) {
    const WorkspacePlace all[] = {{}, {}};
    EXPECT_EQ(neighbour(all, 1), none);
    EXPECT_EQ(neighbour({}, 1), none);
}

} // namespace
