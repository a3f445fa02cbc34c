// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "places/Importer.h"
#include "places/Places.h"
#include "server/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

inline const std::filesystem::path kData = PLACES_DATA;

/// The places file of the shipped tables, imported once.
class RealPlaces : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const TemporaryFolder folder;
        s_report = beacond::ImportPlaces(beacond::ImportSources::InFolder(kData), folder / "places.bin");
        s_places = beacond::Places::Open(folder / "places.bin");
    }
    static void TearDownTestSuite() { s_places.reset(); }

    static std::vector<std::string> Cities(std::string_view state, std::string_view letters, std::size_t most)
    {
        std::vector<std::string> cities;
        for (const beacond::Match& match : s_places->Search(state, letters, most))
            cities.push_back(match.city);
        return cities;
    }

    static bool Finds(std::string_view state, std::string_view letters, std::string_view atlasId)
    {
        constexpr std::size_t kLongestList = 1000;
        const std::vector<beacond::Match> matches = s_places->Search(state, letters, kLongestList);
        return std::any_of(matches.begin(), matches.end(),
                           [&](const beacond::Match& match) { return match.atlasId == atlasId; });
    }

public:
    static inline beacond::ImportReport s_report;
    static inline std::shared_ptr<const beacond::Places> s_places;
};
