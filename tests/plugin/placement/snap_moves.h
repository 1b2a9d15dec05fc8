/// Random art with pieces of all kinds in each other's reach, and moves over any art, made three times over:
/// by walking, with the index of a drag, and plainly.
#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "tests/plugin/placement/plain_snap.h"
#include "workbench/document/document.h"

class Scribbler {
public:
    explicit Scribbler(unsigned seed) : random_(seed) {}

    int Below(int bound) { return std::uniform_int_distribution<>(0, bound - 1)(random_); }
    double Uniform(double from, double to) {
        return std::uniform_real_distribution<double>(from, to)(random_);
    }
    bool Often(int percent) { return Below(100) < percent; }
    HostPoint Beside(HostPoint point, double reach) {
        return {point.x + Uniform(-reach, reach), point.y + Uniform(-reach, reach)};
    }

    /// Layers, groups and paths of their own zoom: crowded in a small place, spread over a page, or with
    /// coordinates that are no numbers or beyond all measure.
    void Scribble(workbench::Document& document);

private:
    void Fill(workbench::Document& document, workbench::Art* container, int members, int depth);
    void Draw(workbench::PathData& path);
    void DrawCircle(workbench::PathData& path);
    HostPathSegment Segment(const workbench::PathData& path);
    double Number();

    std::mt19937 random_;
    int side_ = 24;
    bool wild_ = false;
};

/// Makes `count` moves of a drag over the front document, whose plug-in holds its suites, with one index for
/// all of them.  Returns what differs first, or nothing.
std::string MakeMoves(workbench::Document& document, unsigned seed, int count, PlainSnap& plain);
