#include "unit/Program.h"
#include "util/MacUtils.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Utilities : testing::Test {
    Program program{variants::barrier};
    platform::memory::MemoryPlatform& platform = program.platform;
    platform::Platform services = platform.services();
};

TEST_F(Utilities, TellTheSystemsVersionInThreeNumbers) {
    platform.system.setSystemVersion(platform::Version{6, 1, 0});
    EXPECT_EQ(MacUtils::OSVersion(services), "6.1.0");
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST_F(Utilities, LogThatTheSystemDoesNotTellItsVersion) {
    platform.system.setSystemVersion(std::nullopt);
    EXPECT_EQ(MacUtils::OSVersion(services), "999");
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(log {"text":"Exception: the system's version cannot be read )"
                            R"(ERRORE NELLA VERSIONE DELL'OS"})"));
}

TEST_F(Utilities, TellTheMachinesNameAndIdentifierOrThatThereIsNone) {
    EXPECT_EQ(MacUtils::machineModel(services), "Mac0,0");
    EXPECT_EQ(MacUtils::getSystemUUID(services), "00000000-0000-0000-0000-000000000000");
    platform.system.setMachineModel("");
    platform.system.setMachineIdentifier(std::nullopt);
    EXPECT_EQ(MacUtils::machineModel(services), "notFound");
    EXPECT_EQ(MacUtils::getSystemUUID(services), std::nullopt);
}

TEST_F(Utilities, FindTheUsersFolders) {
    EXPECT_EQ(MacUtils::getPathGenerico(services), "/memory/home/Documents");
    EXPECT_EQ(MacUtils::filePath(services, "a b.txt"), "/memory/home/Documents/a b.txt");
    EXPECT_EQ(MacUtils::downloadFolder(services), "/memory/home/Downloads");
    EXPECT_EQ(MacUtils::desktopFolder(services), "/memory/home/Desktop");
    EXPECT_EQ(MacUtils::downloadURL(services), "/memory/home/Downloads");
}

TEST_F(Utilities, FindNoFoldersOfAUserWithoutAny) {
    platform.files.setHome(std::nullopt);
    for (const auto folder : {MacUtils::getPathGenerico, MacUtils::downloadFolder,
                              MacUtils::desktopFolder, MacUtils::downloadURL})
        EXPECT_EQ(folder(services), std::nullopt);
    EXPECT_EQ(MacUtils::filePath(services, "a"), std::nullopt);
    EXPECT_EQ(MacUtils::fromBase64ToImageFile(services, "QQ=="), std::nullopt);
}

TEST_F(Utilities, HaveNoAddressForAFolderWhoseNameNoAddressMayHold) {
    for (const char* home : {"/home/anna maria", "/home/niccolò", "/home/100%"}) {
        platform.files.setHome(home);
        EXPECT_EQ(MacUtils::downloadURL(services), std::nullopt) << home;
    }
}

TEST_F(Utilities, WriteDatesInThreeForms) {
    platform.system.setLocalTime({2026, 2, 3, 15, 4, 5});
    EXPECT_EQ(MacUtils::getYearNumber(services), "2026");
    EXPECT_EQ(MacUtils::univokeDate(services), "2026/02/03-03:04:05");
    EXPECT_EQ(MacUtils::currentDateqweString(services), "03-02-2026 15.04.05");
}

TEST_F(Utilities, CountTheHoursOfAStampToTwelveFromMidnightAndFromNoon) {
    const std::pair<int, const char*> rows[] = {{0, "12"},  {1, "01"},  {11, "11"},
                                                {12, "12"}, {13, "01"}, {23, "11"}};
    for (const auto& [hour, shown] : rows) {
        platform.system.setLocalTime({987, 12, 31, hour, 0, 60});
        EXPECT_EQ(MacUtils::univokeDate(services), "0987/12/31-" + std::string(shown) + ":00:60");
    }
}

TEST_F(Utilities, SeeTheClockGoOnWithTheTime) {
    platform.system.setLocalTime({2024, 2, 28, 23, 59, 58});
    platform.advance(1.999);
    EXPECT_EQ(MacUtils::currentDateqweString(services), "28-02-2024 23.59.59");
    platform.advance(0.001);
    EXPECT_EQ(MacUtils::currentDateqweString(services), "29-02-2024 00.00.00");
}

TEST_F(Utilities, DigestATextsBytes) {
    EXPECT_EQ(MacUtils::md5(services, ""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(MacUtils::md5(services, "abc"), "900150983cd24fb0d6963f7d28e17f72");
}

TEST_F(Utilities, ReadATextsBytesAgainUpToTheirFirstZero) {
    using namespace std::string_literals;
    EXPECT_EQ(MacUtils::fixStringWithUTF8Encoding(services, "perché"), "perché");
    EXPECT_EQ(MacUtils::fixStringWithUTF8Encoding(services, "a\0b"s), "a");
    EXPECT_EQ(MacUtils::fixStringWithUTF8Encoding(services, "a\xff"), "a\ufffd");
}

TEST_F(Utilities, WriteATextIntoAFileInAFolderThatTheyMake) {
    using platform::TextEncoding;
    const auto write = [this](std::string_view text, TextEncoding encoding) {
        return MacUtils::writeFileWithContent_path_name_ext_encoding(services, text, "/a/b/c", "n",
                                                                     "txt", encoding);
    };
    EXPECT_TRUE(write("perché €", TextEncoding::utf8));
    EXPECT_EQ(platform.files.contents("/a/b/c/n.txt"), "perché €");
    EXPECT_TRUE(write("perché €", TextEncoding::macRoman));
    EXPECT_EQ(platform.files.contents("/a/b/c/n.txt"), "perch\x8e \xdb");
    EXPECT_FALSE(write("perché €", TextEncoding::latin1));
    EXPECT_FALSE(write("perché", TextEncoding::ascii));
    EXPECT_EQ(platform.files.contents("/a/b/c/n.txt"), "perch\x8e \xdb") << "as it was";
}

TEST_F(Utilities, DoNotWriteIntoAFolderThatIsAFile) {
    platform.files.createEmpty("/a");
    EXPECT_FALSE(MacUtils::writeFileWithContent_path_name_ext_encoding(
        services, "x", "/a/b", "n", "txt", platform::TextEncoding::utf8));
}

TEST_F(Utilities, PutTheBytesOfABase64PictureIntoTheDocuments) {
    EXPECT_EQ(MacUtils::fromBase64ToImageFile(services, "/9j/ 4AAQ\nSk*ZJRg=="),
              "/memory/home/Documents/tempimage.jpg");
    EXPECT_EQ(platform.files.contents("/memory/home/Documents/tempimage.jpg"),
              std::string("\xff\xd8\xff\xe0\0\x10JFIF", 10));
}

TEST_F(Utilities, LogASimpleAlertAndShowIt) {
    for (const bool modal : {true, false}) {
        MacUtils::showSimpleModalAlertWithTitle_message_modal(services, "Title", "What it says",
                                                              modal);
        EXPECT_THAT(program.effects(),
                    ElementsAre(R"(log {"text":"showSimpleModalAlertWithTitle: Title - What it )"
                                R"(says"})",
                                R"(alert {"message":"Title","informative":"What it says",)"
                                R"("buttons":["OK"],"accessory":null,"code":1})"));
    }
}

TEST_F(Utilities, SendANotificationWithWhatIsGiven) {
    MacUtils::sendSimpleNotificationWithTitle_text_sound_identifier(services, "Title", "Text",
                                                                    "Pop", "id");
    MacUtils::sendSimpleNotificationWithTitle_text_sound_identifier(services, "Title", std::nullopt,
                                                                    std::nullopt, std::nullopt);
    EXPECT_THAT(
        program.effects(),
        ElementsAre(
            R"(notification {"title":"Title","text":"Text","sound":"Pop","identifier":"id"})",
            R"(notification {"title":"Title","text":null,"sound":null,"identifier":null})"));
}

} // namespace
} // namespace palisor
