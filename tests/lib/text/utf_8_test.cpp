// Characters of UTF-8: one to four bytes, and what is none at its borders.
#include "text/utf_8.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>

namespace brelan {
namespace {

using namespace std::string_view_literals;

TEST(Utf8, CharactersHaveOneToFourBytes) {
    // The first and the last of each length, and those beside the surrogates.
    for (const auto& [size, text] : {std::pair{1U, "\0"sv},
                                     {1U, "\x7F"sv},
                                     {2U, "\xC2\x80"sv},
                                     {2U, "\xDF\xBF"sv},
                                     {3U, "\xE0\xA0\x80"sv},
                                     {3U, "\xED\x9F\xBF"sv},
                                     {3U, "\xEE\x80\x80"sv},
                                     {3U, "\xEF\xBF\xBF"sv},
                                     {4U, "\xF0\x90\x80\x80"sv},
                                     {4U, "\xF4\x8F\xBF\xBF"sv}})
        EXPECT_EQ(size_of_character(text), size) << text;
}

TEST(Utf8, OverlongFormsSurrogatesAndHalvesAreNone) {
    for (const std::string_view text :
         {""sv, "\x80"sv, "\xC1\xBF"sv, "\xC2"sv, "\xC2 "sv, "\xE0\x9F\xBF"sv, "\xED\xA0\x80"sv, "\xE1\x80"sv,
          "\xF0\x8F\xBF\xBF"sv, "\xF1\x80\x80x"sv, "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv})
        EXPECT_EQ(size_of_character(text), 0U) << text;
}

}  // namespace
}  // namespace brelan
