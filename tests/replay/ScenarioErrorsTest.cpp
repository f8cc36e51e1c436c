#include "replay/ReplayRun.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace palisor {
namespace {

class WrongStep : public testing::TestWithParam<const char*> {};

// The wrong step stands on line 4, behind a step whose effect has to be printed, and before one
// whose effect must not be.
TEST_P(WrongStep, EndsTheRunWithOneLineThatNamesItsPlace) {
    const auto result = ReplayRun().play("# first\n\n"
                                         "{\"do\":\"call\",\"operation\":\"playTheSound\"}\n" +
                                         std::string(GetParam()) +
                                         "\n{\"do\":\"call\",\"operation\":\"playTheSound\"}\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "{\"t\":0,\"effect\":\"sound\",\"name\":\"sound\",\"volume\":0.5}\n");
    EXPECT_THAT(result.errors, testing::StartsWith("s:4: "));
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1);
    EXPECT_EQ(result.errors.back(), '\n');
}

INSTANTIATE_TEST_SUITE_P(Lines, WrongStep,
                         testing::Values("nonsense", "{\"do\":\"launch\"", "{\"do\":\"launch\"}{}",
                                         "[]", "7", " # late", "{\"do\":\"\xff\"}",
                                         "{\"do\":\"advance\",\"seconds\":1e999}"));

INSTANTIATE_TEST_SUITE_P(
    Members, WrongStep,
    testing::Values(
        R"({})", R"({"do":7})", R"({"do":"fly"})", R"({"do":"a\nb"})", R"({"do":"launch","x":1})",
        R"({"do":"bundle"})", R"({"do":"bundle","info":[]})",
        R"({"do":"bundle","info":{},"do2":""})", R"({"do":"system","version":"ten"})",
        R"({"do":"system","version":"10."})", R"({"do":"system","version":"1.2.3.4"})",
        R"({"do":"system","version":10})", R"({"do":"system","languages":"en"})",
        R"({"do":"system","languages":[1]})", R"({"do":"system","now":"today"})",
        R"({"do":"system","now":"2026-13-02T15:04:05"})", R"({"do":"system","colour":"red"})",
        R"({"do":"screens"})", R"({"do":"screens","frames":[[1,2,3]]})",
        R"({"do":"screens","frames":[[1,2,3,"4"]]})",
        R"({"do":"screens","frames":[[0,0,9,9]],"main":1})",
        R"({"do":"screens","frames":[[0,0,9,9]],"main":-1})",
        R"({"do":"screens","frames":[[0,0,9,9]],"main":0.5})", R"({"do":"defaults","set":[]})",
        R"({"do":"defaults","set":{"a":1.5}})", R"({"do":"defaults","set":{"a":null}})",
        R"({"do":"defaults","set":{"a":[]}})",
        R"({"do":"defaults","set":{"a":18446744073709551615}})",
        R"({"do":"defaults","remove":"a"})", R"({"do":"shortcut"})",
        R"({"do":"shortcut","keyCode":1})", R"({"do":"shortcut","clear":false})",
        R"({"do":"shortcut","clear":true,"keyCode":1,"modifierFlags":1})", R"({"do":"reply"})",
        R"({"do":"reply","body":{}})", R"({"do":"reply","error":false})",
        R"({"do":"reply","body":"","error":true})", R"({"do":"answers","codes":[true]})",
        R"({"do":"answers","codes":[4294967296]})", R"({"do":"running","identifiers":[1]})",
        R"({"do":"granted","value":1})", R"({"do":"event","id":"a"})",
        R"({"do":"event","id":"a","start":1,"alarms":[{"loud":true}]})",
        R"({"do":"event","id":"a","start":1,"alarms":[1]})",
        R"({"do":"event","id":"a","start":1,"detached":1})"));

INSTANTIATE_TEST_SUITE_P(
    Deeds, WrongStep,
    testing::Values(
        R"({"do":"pointer"})", R"({"do":"pointer","at":[1]})", R"({"do":"pointer","at":[1,true]})",
        R"({"do":"pointer","at":[1,2],"type":"flagsChanged"})", R"({"do":"cursor","at":{}})",
        R"({"do":"cursor","at":[1,2],"type":"mouseMoved"})", R"({"do":"flagsChanged"})",
        R"({"do":"flagsChanged","keyCode":65536})", R"({"do":"flagsChanged","keyCode":-1})",
        R"({"do":"advance"})", R"({"do":"advance","seconds":"1"})",
        R"({"do":"advance","seconds":-1})", R"({"do":"advance","seconds":1e18})",
        R"({"do":"call"})", R"({"do":"call","operation":"fly"})",
        R"({"do":"call","operation":"playTheSound:"})",
        R"({"do":"call","operation":"playTheSound","arguments":[1]})",
        R"({"do":"call","operation":"playTheSound","arguments":{}})",
        R"({"do":"call","operation":"runForDirection:"})",
        R"({"do":"call","operation":"runForDirection:","arguments":[1.5]})",
        R"({"do":"call","operation":"runForDirection:","arguments":[2147483648]})",
        R"({"do":"call","operation":"onKeyPressed:","arguments":[65536]})",
        R"({"do":"call","operation":"comboPressedReleased:","arguments":[2]})",
        R"({"do":"call","operation":"getCenterPointOfScreen:","arguments":[2]})",
        R"({"do":"call","operation":"forceMouseToPoint:","arguments":[1,2]})",
        R"({"do":"call","operation":"restrictRect:aboutPixel:","arguments":[[1,2],2]})",
        R"({"do":"choose"})", R"({"do":"slider","name":"loud","value":1})",
        R"({"do":"slider","name":"dark"})",
        R"({"do":"slider","name":"dark","value":1,"event":"x"})",
        R"({"do":"button","name":"butlato5","state":1})",
        R"({"do":"button","name":"butlato1","state":2})",
        R"({"do":"button","name":"butlato1","state":true})", R"({"do":"statusClick","button":3})",
        R"({"do":"hotKey"})", R"({"do":"hotKey","keyCode":1,"modifierFlags":"x"})",
        R"({"do":"link","view":"mail","url":""})", R"({"do":"link","view":"web"})",
        R"({"do":"show"})", R"({"do":"show","what":"menu"})",
        R"({"do":"show","what":["menu","clouds"]})"));

TEST(ScenarioErrors, AreFoundInsideTheRunLoopOfTheTapToo) {
    const auto result = ReplayRun().play(R"({"do":"system","version":"10.13"}
{"do":"launch"}
{"do":"call","operation":"playTheSound"}
{"do":"fly"}
)",
                                         "--only sound s");
    EXPECT_EQ(result.output, "{\"t\":0,\"effect\":\"sound\",\"name\":\"sound\",\"volume\":0.5}\n");
    EXPECT_EQ(result.errors, "s:4: unknown step \"fly\"\n");
    EXPECT_EQ(result.status, 2);
}

} // namespace
} // namespace palisor
