#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "cli/exit_status.h"
#include "study/case_record.h"
#include "study/deck_template.h"
#include "study/expression.h"
#include "study/plan.h"
#include "study/samples.h"

namespace brelan::tool {
namespace {

const NamedValues VALUES{{"depth", 4.5}, {"count", std::int64_t{3}}, {"soil", std::string("clay")}};

double number(std::string_view expression) {
    return std::get<double>(evaluate(expression, VALUES));
}

std::string refusal(std::string_view expression) {
    try {
        evaluate(expression, VALUES);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "";
}

TEST(StudyExpression, HasTheUsualOrderOfOperations) {
    EXPECT_EQ(number("2*depth+1"), 10.0);
    EXPECT_EQ(number("1+2*3-4/2"), 5.0);
    EXPECT_EQ(number("-2^2"), -4.0);
    EXPECT_EQ(number("2^3^2"), 512.0);
    EXPECT_EQ(number("2^-1"), 0.5);
    EXPECT_EQ(number("10-2-3"), 5.0);
    EXPECT_EQ(number("- (1 + count) * 2"), -8.0);
}

TEST(StudyExpression, HasFunctionsOfDegrees) {
    EXPECT_NEAR(number("sin(30)"), 0.5, 1e-15);
    EXPECT_NEAR(number("tan(45)"), 1.0, 1e-15);
    EXPECT_NEAR(number("atan(1)"), 45.0, 1e-13);
    EXPECT_EQ(number("min(3, depth, 7)"), 3.0);
    EXPECT_EQ(number("max(abs(-5), sqrt(16))"), 5.0);
    EXPECT_EQ(number("round(2.345, 2)"), 2.35);
    EXPECT_EQ(number("round(-2.5)"), -3.0);
    EXPECT_EQ(number("floor(-0.5)+ceil(0.5)"), 0.0);
}

TEST(StudyExpression, AParameterAloneKeepsItsValue) {
    EXPECT_EQ(evaluate(" soil ", VALUES), StudyValue(std::string("clay")));
    EXPECT_EQ(evaluate("count", VALUES), StudyValue(std::int64_t{3}));
}

TEST(StudyExpression, SaysWhatIsWrong) {
    EXPECT_EQ(refusal("deep+1"), "there is no parameter \"deep\"; expected one of depth, count, soil");
    EXPECT_EQ(refusal("2*soil"), "\"2*soil\": soil is the text \"clay\" and no number");
    EXPECT_EQ(refusal("(1+2"), "\"(1+2\": expected \")\", found its end");
    EXPECT_EQ(refusal("1 2"), "\"1 2\": expected the end of the expression, found \"2\"");
    EXPECT_EQ(refusal("1/0"), "\"1/0\" is no finite number");
    EXPECT_EQ(refusal("sqrt(1,2)"), "\"sqrt(1,2)\": sqrt takes one value, found 2");
    EXPECT_NE(refusal("log(2)"), "");
    EXPECT_NE(refusal(std::string(100000, '(')), "");
    EXPECT_NE(refusal(std::string(100000, '-')), "");
}

TEST(StudyDeck, HasValuesInThePlaceOfItsPlaceholders) {
    const DeckTemplate deck("a.dat",
                            "{depth} {depth:.3f} {count:d} {2*depth+1:8.2f}|{soil} {{x}}\n{0.1+0.2}");
    EXPECT_EQ(deck.deck(VALUES), "4.5 4.500 3    10.00|clay {x}\n0.3");
    EXPECT_EQ(deck.unused({"depth", "count", "soil"}), "");
    EXPECT_EQ(deck.unused({"dept"}), "dept");
}

std::string refusal_of_deck(std::string_view text) {
    try {
        return DeckTemplate("a.dat", text).deck(VALUES);
    } catch (const Failure& failure) {
        return failure.what();
    }
}

TEST(StudyDeck, NamesTheLineThatIsWrong) {
    EXPECT_EQ(refusal_of_deck("\n{depth\n}"),
              "a.dat, line 2: a { without its }; a brace of the deck's own is written {{");
    EXPECT_EQ(refusal_of_deck("\n\n}"),
              "a.dat, line 3: a } without its {; a brace of the deck's own is written }}");
    EXPECT_EQ(refusal_of_deck("{depth:d}"),
              "a.dat, line 1: expected a whole number for the format \"d\", found 4.5");
    EXPECT_EQ(refusal_of_deck("{depth:%s}"),
              "a.dat, line 1: \"%s\": expected a format such as .3f, 8.2f, d or g");
    EXPECT_EQ(refusal_of_deck("{soil:.1f}"),
              "a.dat, line 1: expected a number for the format \".1f\", found \"clay\"");
}

// 10,000th number of the generator that starts with its usual seed, as the standard of the language states
// it.
TEST(StudySamples, AreMadeOfAGeneratorThatIsTheSameEverywhere) {
    constexpr std::uint64_t usual = 5489, stated = 9981545732273789042U;
    const std::vector<double> drawn = samples(Sampling::random, 10000, usual ^ 0x9E3779B97F4A7C15U, 0);
    EXPECT_EQ(drawn.back(), static_cast<double>(stated >> 11U) * 0x1p-53);
}

TEST(StudySamples, OfALatinHypercubeHaveOneInEachPart) {
    for (const std::size_t parameter : {0U, 1U}) {
        const std::vector<double> drawn = samples(Sampling::latin, 50, 7, parameter);
        std::set<int> parts;
        for (const double value : drawn)
            parts.insert(static_cast<int>(value * 50));
        EXPECT_EQ(parts.size(), 50U);
    }
    EXPECT_NE(samples(Sampling::latin, 50, 7, 0), samples(Sampling::latin, 50, 7, 1));
    EXPECT_NE(samples(Sampling::latin, 50, 7, 0), samples(Sampling::latin, 50, 8, 0));
    EXPECT_EQ(samples(Sampling::latin, 50, 7, 0), samples(Sampling::latin, 50, 7, 0));
}

StudyFile study_of(Method method, std::vector<Parameter> parameters) {
    StudyFile study;
    study.method = method;
    study.parameters = std::move(parameters);
    return study;
}

const Parameter A{"a", {std::int64_t{1}, std::int64_t{2}}};
const Parameter B{"b", {std::string("x"), std::string("y"), std::string("z")}};

std::string case_text(const Plan& plan, std::size_t number) {
    std::string text;
    for (const auto& [name, value] : plan.values(number))
        text += name + text_of_value(value);
    return text;
}

TEST(StudyPlan, OfAGridHasEveryCombinationTheLastParameterFirst) {
    const Plan plan(study_of(Method::grid, {A, B}));
    std::string all;
    for (std::size_t k = 1; k <= plan.count(); ++k)
        all += case_text(plan, k) + " ";
    EXPECT_EQ(all, "a1bx a1by a1bz a2bx a2by a2bz ");
}

TEST(StudyPlan, OfAListTakesValuesTogetherAndASingleOneWithAll) {
    const Plan plan(study_of(Method::list, {{"a", {std::int64_t{7}}}, B}));
    ASSERT_EQ(plan.count(), 3U);
    EXPECT_EQ(case_text(plan, 3), "a7bz");
}

TEST(StudyPlan, OfSamplesStaysBetweenTheEnds) {
    StudyFile study = study_of(Method::latin, {{"a", {}, 2.0, 4.0}, B});
    study.count = 30;
    const Plan plan(study);
    std::map<std::string, int> of_b;
    for (std::size_t k = 1; k <= 30; ++k) {
        const NamedValues values = plan.values(k);
        const double a = std::get<double>(values[0].second);
        EXPECT_TRUE(a >= 2.0 && a < 4.0);
        ++of_b[text_of_value(values[1].second)];
    }
    EXPECT_EQ(of_b, (std::map<std::string, int>{{"x", 10}, {"y", 10}, {"z", 10}}));
}

TEST(StudyPlan, RefusesMoreCasesThanCanBeHeld) {
    Parameter many{"a", std::vector<StudyValue>(10000, std::int64_t{1})};
    EXPECT_THROW(Plan(study_of(Method::grid, {many, many})), Failure);
}

TEST(StudyRecord, ComesBackAsItWasLeft) {
    CaseRecord record;
    record.number = 12345;
    record.input = 0xfedcba9876543210U;
    record.state = "failed";
    record.message = "a.dat, line 3: expected \\ a number";
    record.details = "  3 | x\n    | ^\n";
    record.written = {"a.dat", "b c.Mes"};
    record.seconds = 0.25;
    record.gathered = {
        {"nodes", std::int64_t{7}}, {"area of old clay", 0.1}, {"name", std::string("12")}, {"none", {}}};
    const std::optional<CaseRecord> read = record_of_text(record_text(record));
    ASSERT_TRUE(read);
    EXPECT_EQ(record_text(*read), record_text(record));
    EXPECT_EQ(read->message, record.message);
    EXPECT_EQ(read->details, record.details);
    EXPECT_EQ(read->gathered, record.gathered);
    EXPECT_EQ(folder_of_case(12345), "00012/012345");
}

TEST(StudyRecord, ThatIsNotWholeIsNone) {
    CaseRecord record;
    record.number = 1;
    record.state = "finished";
    const std::string text = record_text(record);
    for (std::size_t size = 0; size + 1 < text.size(); ++size)
        EXPECT_FALSE(record_of_text(text.substr(0, size))) << size;
}

}  // namespace
}  // namespace brelan::tool
