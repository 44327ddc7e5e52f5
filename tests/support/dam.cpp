#include "support/dam.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <set>
#include <sstream>
#include <utility>

namespace brelan::test {

namespace fs = std::filesystem;

namespace {

std::string shown(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

std::string card(const std::vector<double>& values) {
    std::string line;
    for (const double value : values) {
        line += " ";
        line += shown(value);
    }
    return line;
}

// A list over as many lines as it needs.
std::string list_card(const std::vector<double>& values) {
    constexpr std::size_t in_line = 10;
    std::string lines;
    for (std::size_t i = 0; i < values.size(); ++i) {
        lines += i > 0 && i % in_line == 0 ? "\n " : " ";
        lines += shown(values[i]);
    }
    return lines;
}

std::string points_card(const std::vector<DamPlace>& points) {
    std::vector<double> values;
    for (const DamPlace& p : points) {
        values.push_back(p.x);
        values.push_back(p.y);
    }
    return card(values);
}

double polygon_area(const std::vector<DamPlace>& p) {
    double sum = 0.0;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const DamPlace& a = p[i];
        const DamPlace& b = p[(i + 1) % p.size()];
        sum += a.x * b.y - b.x * a.y;
    }
    return 0.5 * sum;
}

// Distance of a point from a segment.
double distance(const DamPlace& p, const DamPlace& a, const DamPlace& b) {
    const double ux = b.x - a.x, uy = b.y - a.y;
    const double t = ((p.x - a.x) * ux + (p.y - a.y) * uy) / (ux * ux + uy * uy);
    const double s = std::clamp(t, 0.0, 1.0);
    return std::hypot(p.x - a.x - s * ux, p.y - a.y - s * uy);
}

int integer_at(const std::string& line, std::size_t start, std::size_t width) {
    return start < line.size() ? std::atoi(line.substr(start, width).c_str()) : 0;
}

}  // namespace

// --- the cards -------------------------------------------------------------------------------------

std::string DamInput::deck() const {
    std::vector<std::string> cards{"3 0"};
    cards.push_back(
        card({static_cast<double>(layers.size()), core.empty() ? 0.0 : 1.0, wall.empty() ? 0.0 : 1.0,
              static_cast<double>(ISHELL), static_cast<double>(NCREST), Hi}));
    cards.push_back(card({HDAM, HWATER, RUNL, WLEFT, crest, WMID, RUNR, WRIGHT}));
    if (!core.empty())
        cards.push_back(points_card(core));
    if (!layers.empty()) {
        cards.push_back(card({XLEFT, XRIGHT}));
        cards.push_back(list_card(layers));
        if (!wall.empty())
            cards.push_back(points_card(wall));
    }
    return commented_deck(cards);
}

double DamInput::depth() const {
    return std::accumulate(layers.begin(), layers.end(), 0.0);
}

std::vector<DamPlace> DamInput::outline() const {
    std::vector<DamPlace> points{{toe(), 0.0}, {crest_right(), HDAM}, {crest_left(), HDAM}, {0.0, 0.0}};
    if (!layers.empty()) {
        points.push_back({-XLEFT, 0.0});
        points.push_back({-XLEFT, -depth()});
        points.push_back({toe() + XRIGHT, -depth()});
        points.push_back({toe() + XRIGHT, 0.0});
    }
    return points;
}

double DamInput::area() const {
    return polygon_area(outline());
}

// --- the mesh --------------------------------------------------------------------------------------

DamMesh::DamMesh(std::string_view text, Kind kind) {
    const std::vector<std::string> lines = lines_of(text);
    if (lines.size() < 5)
        return;
    int counts[4] = {};
    std::istringstream(lines[2]) >> counts[0] >> counts[1] >> counts[2] >> counts[3];
    const bool scalar = kind == Kind::temperature || kind == Kind::head;
    const std::size_t words = scalar ? 2 : kind == Kind::coupled ? 7 : 5;
    std::size_t at = 5;
    for (int i = 0; i < counts[0] && at < lines.size(); ++i, ++at) {
        const std::string& line = lines[at];
        DamNode& node = nodes[integer_at(line, 1, 6)];
        for (std::size_t k = 0; k < words; ++k)
            node.codes.push_back(integer_at(line, 7 + 5 * k, 5));
        std::istringstream(line.substr(7 + 5 * words)) >> node.at.x >> node.at.y;
    }
    at += 2;
    for (int i = 0; i < counts[1] && at < lines.size(); ++i, ++at) {
        const std::string& line = lines[at];
        DamElement& element = elements[integer_at(line, 1, 6)];
        for (std::size_t k = 1; k <= 4; ++k)
            if (const int corner = integer_at(line, 7 * k + 1, 6); corner > 0)
                element.corners.push_back(corner);
        element.material = integer_at(line, scalar ? 36 : 63, 5);
    }
}

double DamMesh::area_of(const DamElement& element) const {
    std::vector<DamPlace> corners;
    for (const int corner : element.corners)
        corners.push_back(nodes.at(corner).at);
    return polygon_area(corners);
}

double DamMesh::total_area() const {
    double sum = 0.0;
    for (const auto& [number, element] : elements)
        sum += area_of(element);
    return sum;
}

std::map<int, double> DamMesh::zone_areas() const {
    std::map<int, double> zones;
    for (const auto& [number, element] : elements)
        zones[element.material] += area_of(element);
    return zones;
}

std::vector<std::string> dam_problems(const DamInput& dam, const DamMesh& mesh) {
    constexpr double SHARE = 2.0E-4;  // of the area, and of the extent: cards carry five digits
    std::vector<std::string> problems;
    if (mesh.elements.empty())
        problems.emplace_back("no elements");
    std::set<std::pair<int, int>> sides;
    for (const auto& [number, element] : mesh.elements) {
        const std::vector<int>& c = element.corners;
        bool known = c.size() >= 3;
        for (const int corner : c)
            known = known && mesh.nodes.contains(corner);
        if (!known) {
            problems.push_back("element " + std::to_string(number) + ": corners that are no nodes");
            return problems;
        }
        if (mesh.area_of(element) <= 0.0)
            problems.push_back("element " + std::to_string(number) + ": no positive area");
        for (std::size_t i = 0; i < c.size(); ++i)
            if (!sides.insert({c[i], c[(i + 1) % c.size()]}).second)
                problems.push_back("element " + std::to_string(number) + ": lies over another");
    }
    const double area = mesh.total_area();
    if (std::abs(area - dam.area()) > SHARE * dam.area())
        problems.push_back("area " + shown(area) + ", expected " + shown(dam.area()));
    const std::vector<DamPlace> outline = dam.outline();
    double extent = 0.0;
    for (const DamPlace& p : outline)
        extent = std::max({extent, std::abs(p.x), std::abs(p.y)});
    for (const auto& [a, b] : sides) {
        if (sides.contains({b, a}))
            continue;
        const DamPlace& p = mesh.nodes.at(a).at;
        const DamPlace& q = mesh.nodes.at(b).at;
        const DamPlace middle{0.5 * (p.x + q.x), 0.5 * (p.y + q.y)};
        bool outside = false;
        for (std::size_t i = 0; i < outline.size(); ++i)
            outside =
                outside || distance(middle, outline[i], outline[(i + 1) % outline.size()]) < SHARE * extent;
        if (!outside)
            problems.push_back("free side inside, (" + shown(p.x) + ", " + shown(p.y) + ") to (" +
                               shown(q.x) + ", " + shown(q.y) + ")");
    }
    return problems;
}

// --- runs ------------------------------------------------------------------------------------------

void install_dam_files(const Project& project, Kind kind) {
    const fs::path package = fs::path(BRELAN_SOURCE_DIR) / "data" / "Vork" / "Qx" / "Qxdata";
    const bool scalar = kind == Kind::temperature || kind == Kind::head;
    fs::create_directories(project.data_file("Slope"));
    for (const auto& entry : fs::directory_iterator(package / (scalar ? "Slope_TH" : "Slope")))
        fs::copy_file(entry.path(), project.data_file("Slope") / entry.path().filename());
    fs::copy_file(package / "DV-BRELAN.dat", project.data_file("DV-BRELAN.dat"));
}

DamRun::DamRun(const DamInput& dam, Kind kind, std::vector<std::string> arguments)
    : dam_(dam), kind_(kind), project_(kind) {
    install_dam_files(project_, kind);
    project_.deck(dam.deck());
    RunOptions options;
    options.arguments = std::move(arguments);
    result_ = project_.run("", options);
}

}  // namespace brelan::test
