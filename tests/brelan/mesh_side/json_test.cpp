// Values for programs as text.
#include "cli/json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "cli/exit_status.h"

namespace {

using brelan::tool::Failure;
using brelan::tool::Json;

TEST(JsonText, KeepsMembersInTheirOrderAndIndentsThem) {
    const Json json{
        {"z", 1}, {"a", Json::array(std::vector<std::string>{"x", "y"})}, {"none", Json::Array()}};
    EXPECT_EQ(json.text(), "{\n  \"z\": 1,\n  \"a\": [\n    \"x\",\n    \"y\"\n  ],\n  \"none\": []\n}\n");
}

TEST(JsonText, HasNoInfinityAndNoNotANumber) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Json::array({infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}).compact(),
              "[null,null,null]");
}

TEST(JsonText, TellsWholeNumbersRealsTruthAndTextApart) {
    EXPECT_EQ(Json::array({3, 3.0, 0.1, true, "3", std::string_view("b"), Json(), std::size_t{7}}).compact(),
              R"([3,3.0,0.1,true,"3","b",null,7])");
}

TEST(JsonText, MarksQuotesControlCharactersAndBytesThatAreNoText) {
    EXPECT_EQ(Json("a\"\\\n\xff").text(), "\"a\\\"\\\\\\n\xef\xbf\xbd\"\n");
    EXPECT_EQ(Json("\xc3\xa9").compact(), R"("\u00e9")");
}

TEST(JsonText, NullBecomesWhatIsPutIntoIt) {
    Json json;
    json["list"].push_back(1);
    json["list"].push_back(Json{{"deep", Json::Object()}});
    json["text"] = "old";
    json["text"] = "new";
    EXPECT_EQ(json.compact(), R"({"list":[1,{"deep":{}}],"text":"new"})");
}

TEST(JsonParsed, HoldsWhatTheTextHolds) {
    const std::string text = R"({"b":[1,-2,0.5,true,null,"\u00e4"],"a":{},"largest":9223372036854775807})";
    EXPECT_EQ(Json::parsed(text).compact(), text);
    EXPECT_EQ(Json::parsed(R"({"a":1,"a":2})").compact(), R"({"a":2})");
    EXPECT_EQ(Json::parsed("9223372036854775808").compact(),
              "9.223372036854776e+18");  // a real, by its fewest digits
}

TEST(JsonParsed, RefusesWhatIsNoJsonAndWhatIsNestedDeeperThanAnyQuestion) {
    for (const char* text : {"", "{", "[1,]", "{\"a\"}", "\"\xff\"", "1 2", "nan"})
        EXPECT_THROW(Json::parsed(text), Failure) << text;
    EXPECT_NO_THROW(Json::parsed(std::string(16, '[') + std::string(16, ']')));
    EXPECT_THROW(Json::parsed(std::string(17, '[') + std::string(17, ']')), Failure);
}

TEST(JsonParsed, FindsMembersByName) {
    const Json json = Json::parsed(R"({"a":{"b":3}})");
    ASSERT_NE(json.find("a"), nullptr);
    ASSERT_NE(json.find("a")->find("b"), nullptr);
    EXPECT_EQ(json.find("a")->find("b")->compact(), "3");
    EXPECT_EQ(json.find("b"), nullptr);
    EXPECT_EQ(json.find("a")->find("b")->find("c"), nullptr);
}

}  // namespace
