// Dams of random profiles, with cores, walls and layers.
#pragma once

#include <cmath>
#include <random>

#include "support/dam.h"

namespace brelan::test {

class RandomDam {
public:
    explicit RandomDam(unsigned seed) : random_(seed) {
        dam.HDAM = places(between(5.0, 60.0));
        const double left = between(0.8, 3.5), right = chance(0.4) ? left : between(0.8, 3.5);
        dam.RUNL = places(dam.HDAM * left);
        dam.RUNR = places(dam.HDAM * right);
        dam.crest = places(between(0.15, 0.6) * dam.HDAM);
        dam.HWATER = places(between(-0.1, 1.15) * dam.HDAM);
        dam.ISHELL = chance(0.5) ? 1 : 0;
        dam.NCREST = static_cast<int>(between(0.0, 7.0));
        equal = chance(0.7);
        dam.WLEFT = equal ? dam.RUNL : places(dam.RUNL * between(0.9, 1.1));
        dam.WMID = equal ? dam.crest : places(dam.crest * between(0.8, 1.2));
        dam.WRIGHT = equal ? dam.RUNR : places(dam.RUNR * between(0.9, 1.1));
        const int layers = static_cast<int>(between(0.0, 4.0));
        for (int i = 0; i < layers; ++i)
            dam.layers.push_back(places(between(0.15, 0.6) * dam.HDAM));
        dam.XLEFT = places(between(0.5, 3.0) * dam.HDAM);
        dam.XRIGHT = places(between(0.5, 3.0) * dam.HDAM);
        const double middle = 0.5 * (dam.crest_left() + dam.crest_right());
        const double half = 0.5 * (dam.crest_right() - dam.crest_left());
        if (chance(0.6))
            add_core(middle, half);
        if (layers > 0 && chance(0.6))
            add_wall(middle + between(-0.6, 0.6) * half);
    }

    DamInput dam;
    bool equal = true;  // the block columns are the runs and the crest

private:
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    bool chance(double share) { return between(0.0, 1.0) < share; }
    static double places(double value) { return std::round(value * 100.0) / 100.0; }

    void add_core(double middle, double half) {
        const double top = between(0.3, 0.9) * half, base = top * between(1.0, chance(0.3) ? 1.0 : 2.5);
        const double height = places(dam.HDAM * (chance(0.5) ? 1.0 : between(0.7, 0.99)));
        dam.core = {{places(middle - base), 0.0},
                    {places(middle + base), 0.0},
                    {places(middle + top), height},
                    {places(middle - top), height}};
    }
    void add_wall(double middle) {
        const double half = 0.5 * dam.HDAM / 20.0 * between(0.8, 4.0);
        const double foot = -places(dam.depth() * (chance(0.5) ? 1.0 : between(0.2, 0.9)));
        dam.wall = {{places(middle - half), 0.0},
                    {places(middle - half), foot},
                    {places(middle + half), foot},
                    {places(middle + half), 0.0}};
    }

    std::mt19937 random_;
};

}  // namespace brelan::test
