// Values for programs as text.
#include "cli/json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

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

}  // namespace
