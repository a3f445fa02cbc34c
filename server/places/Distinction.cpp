// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "places/Distinction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <unordered_map>
#include <vector>

namespace beacond {

using layout::Distinction;

std::string CoordinateText(std::int32_t units, std::string_view letters)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f %c", std::abs(units) / layout::kUnitsPerDegree,
                  units < 0 ? letters[1] : letters[0]);
    return text.data();
}

std::string DistinctName(const PlaceLabel& label, Distinction distinction, ListKind list)
{
    std::string beside;
    switch (distinction) {
    case Distinction::None:
        break;
    case Distinction::FirstDivision:
        beside = label.firstDivision;
        break;
    case Distinction::SecondDivision:
        beside = label.secondDivision;
        if (list == ListKind::Country && !beside.empty() && !label.firstDivision.empty())
            beside.append(", ").append(label.firstDivision);
        break;
    case Distinction::Coordinates:
        beside = CoordinateText(label.latitude, "NS") + ", " + CoordinateText(label.longitude, "EW");
        break;
    }
    std::string text(label.name);
    return beside.empty() ? text : text.append(" (").append(beside).append(")");
}

namespace {

/// The place of `alike` with at least ten times the people of each other, or the number of labels.
std::size_t FarLargest(std::span<const PlaceLabel> labels, const std::vector<std::size_t>& alike)
{
    for (const std::size_t i : alike) {
        const bool isFarLarger = std::all_of(alike.begin(), alike.end(), [&](std::size_t other) {
            return other == i || labels[i].population / 10 >= std::max(labels[other].population, 1U);
        });
        if (isFarLarger)
            return i;
    }
    return labels.size();
}

} // namespace

void Distinguish(std::span<const PlaceLabel> labels, ListKind list,
                 const std::function<void(std::size_t, Distinction)>& set)
{
    std::vector<std::size_t> alike;
    for (std::size_t i = 0; i < labels.size(); ++i)
        alike.push_back(i);
    if (alike.size() < 2)
        return;
    // Include the texts of settled places: a place without a second division can look like one without a
    // first.
    std::unordered_map<std::string, std::size_t> taken;
    for (const Distinction distinction : {Distinction::FirstDivision, Distinction::SecondDivision}) {
        std::unordered_map<std::string, std::size_t> texts = taken;
        for (const std::size_t i : alike)
            ++texts[DistinctName(labels[i], distinction, list)];
        std::erase_if(alike, [&](std::size_t i) {
            const std::string text = DistinctName(labels[i], distinction, list);
            const bool isAlone = texts.at(text) == 1;
            if (isAlone) {
                taken.emplace(text, 1);
                set(i, distinction);
            }
            return isAlone;
        });
    }
    const std::size_t largest = FarLargest(labels, alike);
    for (const std::size_t i : alike) {
        const bool isPlain = i == largest && !taken.contains(std::string(labels[i].name));
        set(i, isPlain ? Distinction::None : Distinction::Coordinates);
    }
}

} // namespace beacond
