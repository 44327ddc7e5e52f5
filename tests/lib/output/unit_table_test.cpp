// The title and the unit labels of "UNIT.DAT", code by code.
#include "output/unit_table.h"

#include "support/state.h"

namespace brelan::test {
namespace {

class UnitTable : public ChannelTest {
protected:
    static constexpr const char* FILE = "C/Vork/Qx/Qxdata/UNIT.DAT";

    void SetUp() override { state.units = UnitLabels{}; }
    void TearDown() override { state.units = UnitLabels{}; }
    static std::string text(const std::string& codes, const std::string& title = "A title") {
        return "*\n*\n*\n*\n" + title + "\n*\n*\n*\n*\n*\n*\n*\n*\n*\n*\n" + codes;
    }
    void read(const std::string& codes) const {
        directory.write(FILE, text(codes + "\n"));
        read_unit_table(state.channels, state.settings.kind(), state.units);
        EXPECT_FALSE(state.channels.is_open(4));
    }
    static std::string one(int force, int length, int time, int energy, int temperature) {
        return std::to_string(force) + " " + std::to_string(length) + " " + std::to_string(time) + " " +
               std::to_string(energy) + " " + std::to_string(temperature);
    }
};

TEST_F(UnitTable, ForceByCode) {
    const char* const labels[] = {"(N)  ", "(KN) ", "(MN) ", "(Kg) ", "(ton)", "(lb) ", "(Kip)"};
    for (int code = 1; code <= 7; ++code) {
        read(one(code, 1, 1, 1, 1));
        EXPECT_EQ(state.units.force, labels[code - 1]);
    }
}

TEST_F(UnitTable, LengthTimeAndEnergyByCode) {
    const char* const lengths[] = {"cm  ", " m  ", "in  ", "ft  "};
    const char* const times[] = {"(sec)", "(min)", "(hr) ", "(day)"};
    const char* const energies[] = {"(Joule)", "(erg)  ", "(lb-in)", "(Btu)  "};
    for (int code = 1; code <= 4; ++code) {
        read(one(1, code, code, code, 1));
        EXPECT_EQ(state.units.length, lengths[code - 1]);
        EXPECT_EQ(state.units.time, times[code - 1]);
        EXPECT_EQ(state.units.energy, energies[code - 1]);
    }
}

TEST_F(UnitTable, TemperatureByCodeInTheTemperatureKindAndHeadInTheHeadKind) {
    const char* const temperatures[] = {"(o C)", "(o F)", "(o R)", "(K)  "};
    const char* const heads[] = {" cm  ", "  m  ", " in  ", " ft  "};
    for (int code = 1; code <= 4; ++code) {
        for (const std::int32_t edition : {5, 6}) {
            const Edition kind(edition);
            read(one(1, 1, 1, 1, code));
            EXPECT_EQ(state.units.temperature, temperatures[code - 1]);
        }
        for (const std::int32_t edition : {9, 10}) {
            const Edition kind(edition);
            read(one(1, 1, 1, 1, code));
            EXPECT_EQ(state.units.temperature, heads[code - 1]);
        }
    }
}

TEST_F(UnitTable, OtherKindsHaveNoLabelOfTemperature) {
    for (const std::int32_t edition : {1, 2, 3, 4, 7, 8, 11, 12})
        for (int code = 1; code <= 4; ++code) {
            const Edition kind(edition);
            read(one(1, 1, 1, 1, code));
            EXPECT_EQ(state.units.temperature, "     ") << edition;
        }
}

TEST_F(UnitTable, StressByForceAndLength) {
    const char* const labels[7][4] = {
        {"(N/cm2)  ", "(Pa)     ", "(N/in2)  ", "(N/ft2)  "},
        {"(KN/cm2) ", "(KPa)    ", "(KN/in2) ", "(KN/ft2) "},
        {"(MN/cm2) ", "(MPa)    ", "(MN/in2) ", "(MN/ft2) "},
        {"(Kg/cm2) ", "(Kg/m2)  ", "(Kg/in2) ", "(Kg/ft2) "},
        {"(ton/cm2)", "(ton/m2) ", "(ton/in2)", "(ton/ft2)"},
        {"(lb/cm2) ", "(lb/m2)  ", "(psi)    ", "(psf)    "},
        {"(Kip/cm2)", "(Kip/m2) ", "(Ksi)    ", "(Ksf)    "},
    };
    for (int force = 1; force <= 7; ++force)
        for (int length = 1; length <= 4; ++length) {
            read(one(force, length, 1, 1, 1));
            EXPECT_EQ(state.units.stress, labels[force - 1][length - 1]) << force << ' ' << length;
        }
}

TEST_F(UnitTable, MomentByForceAndLength) {
    const char* const labels[7][4] = {
        {"(N-cm)  ", "(N-m)   ", "(N-in)  ", "(N-ft)  "}, {"(KN-cm) ", "(KN-m)  ", "(KN-in) ", "(KN-ft) "},
        {"(MN-cm) ", "(MN-m)  ", "(MN-in) ", "(MN-ft) "}, {"(Kg-cm) ", "(Kg-m)  ", "(Kg-in) ", "(Kg-ft) "},
        {"(ton-cm)", "(ton-m) ", "(ton-in)", "(ton-ft)"}, {"(lb-cm) ", "(lb-m)  ", "(lb-in) ", "(lb-ft) "},
        {"(Kip-cm)", "(Kip-m) ", "(Kip-in)", "(Kip-ft)"},
    };
    for (int force = 1; force <= 7; ++force)
        for (int length = 1; length <= 4; ++length) {
            read(one(force, length, 1, 1, 1));
            EXPECT_EQ(state.units.moment, labels[force - 1][length - 1]) << force << ' ' << length;
        }
}

TEST_F(UnitTable, VelocityAndAccelerationByLengthAndTime) {
    const char* const velocities[4][4] = {
        {"(cm/sec) ", "(cm/min) ", "(cm/hr)  ", "(cm/day) "},
        {"(m/sec)  ", "(m/min)  ", "(m/hr)   ", "(m/day)  "},
        {"(in/sec) ", "(in/min) ", "(in/hr)  ", "(in/day) "},
        {"(ft/sec) ", "(ft/min) ", "(ft/hr)  ", "(ft/day) "},
    };
    const char* const accelerations[4][4] = {
        {"(cm/sec2)", "(cm/min2)", "(cm/hr2) ", "(cm/day2)"},
        {"(m/sec2) ", "(m/min2) ", "(m/hr2)  ", "(m/day2) "},
        {"(in/sec2)", "(in/min2)", "(in/hr2) ", "(in/day2)"},
        {"(ft/sec2)", "(ft/min2)", "(ft/hr2) ", "(ft/day2)"},
    };
    for (int length = 1; length <= 4; ++length)
        for (int time = 1; time <= 4; ++time) {
            read(one(1, length, time, 1, 1));
            EXPECT_EQ(state.units.velocity, velocities[length - 1][time - 1]);
            EXPECT_EQ(state.units.acceleration, accelerations[length - 1][time - 1]);
        }
}

// --- codes that a table does not have ------------------------------------------------------------

TEST_F(UnitTable, LabelsAreBlankInTheirWidthBeforeTheFirstKnownCode) {
    const Edition kind(TEMPERATURE);
    read("0 0 0 0 0");
    EXPECT_EQ(state.units.force, std::string(5, ' '));
    EXPECT_EQ(state.units.length, std::string(4, ' '));
    EXPECT_EQ(state.units.time, std::string(5, ' '));
    EXPECT_EQ(state.units.energy, std::string(7, ' '));
    EXPECT_EQ(state.units.temperature, std::string(5, ' '));
    EXPECT_EQ(state.units.stress, std::string(9, ' '));
    EXPECT_EQ(state.units.moment, std::string(8, ' '));
    EXPECT_EQ(state.units.velocity, std::string(9, ' '));
    EXPECT_EQ(state.units.acceleration, std::string(9, ' '));
}

TEST_F(UnitTable, UnknownCodeLeavesItsLabelsAsTheyStood) {
    const Edition kind(TEMPERATURE);
    for (const char* codes : {"0 0 0 0 0", "8 5 5 5 5", "-1 -1 -1 -1 -1", "2.5 2.5 2.5 2.5 2.5",
                              "1e9 1e9 1e9 1e9 1e9", "1.0000001 1.0000002 3.9999998 0.99999994 1.0000001"}) {
        state.units = UnitLabels{};
        read("5 4 1 3 2");
        read(codes);
        EXPECT_EQ(state.units.force, "(ton)") << codes;
        EXPECT_EQ(state.units.length, "ft  ") << codes;
        EXPECT_EQ(state.units.time, "(sec)") << codes;
        EXPECT_EQ(state.units.energy, "(lb-in)") << codes;
        EXPECT_EQ(state.units.temperature, "(o F)") << codes;
        EXPECT_EQ(state.units.stress, "(ton/ft2)") << codes;
        EXPECT_EQ(state.units.moment, "(ton-ft)") << codes;
        EXPECT_EQ(state.units.velocity, "(ft/sec) ") << codes;
        EXPECT_EQ(state.units.acceleration, "(ft/sec2)") << codes;
    }
}

// A label of two codes needs both.
TEST_F(UnitTable, OneUnknownCodeOfTwoLeavesTheLabelOfBoth) {
    read("5 4 1 3 2");
    read("2 9 2 1 1");
    EXPECT_EQ(state.units.force, "(KN) ");
    EXPECT_EQ(state.units.time, "(min)");
    EXPECT_EQ(state.units.length, "ft  ");
    EXPECT_EQ(state.units.stress, "(ton/ft2)");
    EXPECT_EQ(state.units.moment, "(ton-ft)");
    EXPECT_EQ(state.units.velocity, "(ft/sec) ");
    read("9 1 9 1 1");
    EXPECT_EQ(state.units.length, "cm  ");
    EXPECT_EQ(state.units.stress, "(ton/ft2)");
    EXPECT_EQ(state.units.acceleration, "(ft/sec2)");
    read("9 2 4 1 1");
    EXPECT_EQ(state.units.stress, "(ton/ft2)");
    EXPECT_EQ(state.units.velocity, "(m/day)  ");
}

TEST_F(UnitTable, CodesAreRealsInFreeField) {
    read("2.0, 2E0\n4.\n1 1 comment");
    EXPECT_EQ(state.units.stress, "(KPa)    ");
    EXPECT_EQ(state.units.velocity, "(m/day)  ");
}

// --- the title -----------------------------------------------------------------------------------

TEST_F(UnitTable, TitleHasThe80FirstColumnsOfLine5) {
    directory.write(FILE, text("1 1 1 1 1\n", " A bridge"));
    read_unit_table(state.channels, state.settings.kind(), state.units);
    EXPECT_EQ(state.units.title, " A bridge" + std::string(71, ' '));
    directory.write(FILE, text("1 1 1 1 1\n", std::string(79, 'a') + "bc"));
    read_unit_table(state.channels, state.settings.kind(), state.units);
    EXPECT_EQ(state.units.title, std::string(79, 'a') + "b");
    directory.write(FILE, text("1 1 1 1 1\n", ""));
    read_unit_table(state.channels, state.settings.kind(), state.units);
    EXPECT_EQ(state.units.title, std::string(80, ' '));
}

// --- a file that is not as it should be ----------------------------------------------------------

TEST_F(UnitTable, ShortOrFaultyFileEndsTheRun) {
    EXPECT_NE(failure_of([] {
                  read_unit_table(state.channels, state.settings.kind(), state.units);
              }).find("UNIT.DAT"),
              std::string::npos);
    const std::pair<const char*, const char*> cases[] = {
        {"", "line 1"},
        {"*\n*\n", "line 3"},
        {"*\n*\n*\n*\n", "line 5"},
        {"*\n*\n*\n*\nT\n*\n", "line 7"},
    };
    for (const auto& [content, line] : cases) {
        directory.write(FILE, content);
        const std::string message =
            failure_of([] { read_unit_table(state.channels, state.settings.kind(), state.units); });
        EXPECT_NE(message.find("UNIT.DAT, " + std::string(line) + ": "), std::string::npos) << message;
    }
    for (const char* codes : {"", "\n", "1 1 1 1\n", "1 1 KN 1 1\n", "1 1 1 1 one\n"}) {
        directory.write(FILE, text(codes));
        const std::string message =
            failure_of([] { read_unit_table(state.channels, state.settings.kind(), state.units); });
        EXPECT_NE(message.find("UNIT.DAT, line 1"), std::string::npos) << message;
    }
}

}  // namespace
}  // namespace brelan::test
