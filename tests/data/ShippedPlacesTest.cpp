// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Place
{
    std::string name;
    std::string atlasId;
    std::string city;
    std::string state;
    std::string longitude;
    std::string longitudeFinal;
    std::string latitude;
    std::string latitudeFinal;
    std::string zone;
    std::string utcMinutes; // of a clock that is no whole hour, empty otherwise
};

// A line of places.csv; its head tells where the values are from.
struct Reference
{
    std::string name;
    std::string position; // empty where there is none to compare
    std::string hours;    // likewise
};

std::vector<Reference> References()
{
    std::ifstream file(DUSKBEACON_PLACES);
    std::vector<Reference> references;
    for (std::string line; std::getline(file, line);) {
        std::smatch part;
        if (std::regex_match(line, part, std::regex("([A-Z][A-Za-z_]*),([^,]*),([^,]*),([^,]*)"))) {
            references.push_back({part[1], part[3], part[4]});
        }
    }
    EXPECT_EQ(references.size(), 127U);
    return references;
}

// The largest difference is 0.080 degrees (Tashkent), which is 19 seconds of time.
constexpr double kLargestDifference = 0.085;

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

// "+2518+05518" or "+513030-0000731" to (latitude, longitude) in degrees.
std::pair<double, double> Degrees(const std::string& position)
{
    static const std::regex kForm("([+-])(\\d{2})(\\d{2})(\\d{2})?([+-])(\\d{3})(\\d{2})(\\d{2})?");
    std::smatch part;
    EXPECT_TRUE(std::regex_match(position, part, kForm)) << position;
    const auto angle = [&part](std::size_t first) {
        const double seconds = part[first + 3].matched ? std::stod(part[first + 3]) : 0.0;
        const double size = std::stod(part[first + 1]) + std::stod(part[first + 2]) / 60.0 + seconds / 3600.0;
        return part[first] == "-" ? -size : size;
    };
    return {angle(1), angle(5)};
}

class ShippedPlaces : public testing::Test
{
protected:
    void SetUp() override
    {
        const pugi::xml_parse_result result = m_document.load_file(DUSKBEACON_SHIPPED_SETTINGS);
        ASSERT_TRUE(result) << result.description();
        for (const pugi::xml_node& node : m_document.child("root").child("locations").children()) {
            EXPECT_EQ(std::distance(node.attributes_begin(), node.attributes_end()),
                      node.attribute("utc_minutes") ? 9 : 8)
                << node.name();
            const auto value = [&node](const char* name) {
                return std::string(node.attribute(name).value());
            };
            m_places.push_back({node.name(), value("atlas_id"), value("city"), value("state"),
                                value("longitude"), value("longitude_final"), value("latitude"),
                                value("latitude_final"), value("time_zone2"), value("utc_minutes")});
        }
        ASSERT_FALSE(m_places.empty());
    }

    const Place* ExpectPlace(const std::string& name) const
    {
        const auto found = std::find_if(m_places.begin(), m_places.end(),
                                        [&name](const Place& place) { return place.name == name; });
        EXPECT_NE(found, m_places.end()) << name;
        return found == m_places.end() ? nullptr : &*found;
    }

    pugi::xml_document m_document;
    std::vector<Place> m_places;
};

TEST_F(ShippedPlaces, numbers_areThoseOfThePage)
{
    std::set<std::string> states;
    for (const Place& place : m_places) {
        states.insert(place.state);
    }
    EXPECT_EQ(m_places.size(), 144U);
    EXPECT_EQ(states.size(), 72U) << "Jerusalem, Srinagar and 70 countries";
}

TEST_F(ShippedPlaces, regions_allHaveTheirLargerCities)
{
    for (const Reference& reference : References()) {
        ExpectPlace(reference.name);
    }
}

TEST_F(ShippedPlaces, current_namesAPlace)
{
    ExpectPlace(m_document.child("root").child("locations").attribute("Current").value());
}

TEST_F(ShippedPlaces, name_isTheCityAsADistinctXmlName)
{
    const std::regex plainName("[A-Z][A-Za-z_]*");
    std::set<std::string> names;
    for (const Place& place : m_places) {
        EXPECT_TRUE(std::regex_match(place.name, plainName)) << place.name;
        std::string derived = std::regex_replace(place.city, std::regex("[.']"), "");
        derived = std::regex_replace(derived, std::regex("[ -]"), "_");
        EXPECT_EQ(place.name, derived);
        EXPECT_TRUE(names.insert(Lower(place.name)).second) << place.name;
    }
}

TEST_F(ShippedPlaces, atlasId_isDistinctAndNeedsNoEscapeInAnAddress)
{
    const std::regex unreserved("[A-Za-z0-9_.~-]+");
    std::set<std::string> identifiers;
    for (const Place& place : m_places) {
        EXPECT_TRUE(std::regex_match(place.atlasId, unreserved)) << place.atlasId;
        EXPECT_TRUE(identifiers.insert(place.atlasId).second) << place.atlasId;
    }
}

TEST_F(ShippedPlaces, cityAndState_areShown)
{
    const std::regex words("[A-Z][A-Za-z.' -]*[a-z]");
    for (const Place& place : m_places) {
        EXPECT_TRUE(std::regex_match(place.city, words)) << place.name;
        EXPECT_TRUE(std::regex_match(place.state, words)) << place.name;
    }
}

TEST_F(ShippedPlaces, order_isThatOfTheLinesInTheList)
{
    const auto line = [](const Place& place) { return Lower(place.city + ", " + place.state); };
    for (std::size_t index = 1; index < m_places.size(); ++index) {
        EXPECT_LT(line(m_places[index - 1]), line(m_places[index]));
    }
}

TEST_F(ShippedPlaces, coordinates_areHundredthsAndMatchTheirTextForm)
{
    const std::regex hundredths("-?(0|[1-9]\\d*)\\.\\d\\d");
    const auto text = [](const std::string& degrees, const char* positive, const char* negative) {
        return degrees.front() == '-' ? degrees.substr(1) + ' ' + negative : degrees + ' ' + positive;
    };
    for (const Place& place : m_places) {
        ASSERT_TRUE(std::regex_match(place.latitudeFinal, hundredths)) << place.name;
        ASSERT_TRUE(std::regex_match(place.longitudeFinal, hundredths)) << place.name;
        EXPECT_LE(std::abs(std::stod(place.latitudeFinal)), 90.0) << place.name;
        EXPECT_LE(std::abs(std::stod(place.longitudeFinal)), 180.0) << place.name;
        EXPECT_EQ(place.latitude, text(place.latitudeFinal, "N", "S")) << place.name;
        EXPECT_EQ(place.longitude, text(place.longitudeFinal, "E", "W")) << place.name;
    }
}

TEST_F(ShippedPlaces, coordinates_agreeWithTheZoneTable)
{
    double largest = 0.0;
    int count = 0;
    for (const Reference& reference : References()) {
        if (reference.position.empty()) {
            continue;
        }
        ++count;
        const Place* place = ExpectPlace(reference.name);
        ASSERT_NE(place, nullptr);
        const auto [latitude, longitude] = Degrees(reference.position);
        const double difference = std::max(std::abs(std::stod(place->latitudeFinal) - latitude),
                                           std::abs(std::stod(place->longitudeFinal) - longitude));
        EXPECT_LE(difference, kLargestDifference) << reference.name;
        largest = std::max(largest, difference);
    }
    EXPECT_EQ(count, 69);
    RecordProperty("largest_difference_in_degrees", std::to_string(largest));
}

TEST_F(ShippedPlaces, zone_isNearTheSun)
{
    // The clock follows the sun to within 19 degrees everywhere here (Madrid: 18.7): a wrong sign would show.
    for (const Place& place : m_places) {
        EXPECT_LE(std::abs(std::stod(place.longitudeFinal) - 15.0 * std::stod(place.zone)), 19.0)
            << place.name;
    }
}

TEST_F(ShippedPlaces, zone_isAWholeHourOrHasItsMinutes)
{
    const std::regex wholeHours("0|-?[1-9]\\d?");
    const std::regex quarters("-?\\d+\\.(25|5|75)");
    for (const Place& place : m_places) {
        if (place.utcMinutes.empty()) {
            EXPECT_TRUE(std::regex_match(place.zone, wholeHours)) << place.name;
            continue;
        }
        EXPECT_TRUE(std::regex_match(place.zone, quarters)) << place.name;
        EXPECT_EQ(place.utcMinutes, std::to_string(std::lround(std::stod(place.zone) * 60.0))) << place.name;
    }
}

TEST_F(ShippedPlaces, zone_isTheStandardTimeInForce)
{
    int count = 0;
    for (const Reference& reference : References()) {
        if (!reference.hours.empty()) {
            ++count;
            const Place* place = ExpectPlace(reference.name);
            ASSERT_NE(place, nullptr);
            EXPECT_EQ(place->zone, reference.hours) << reference.name;
        }
    }
    EXPECT_EQ(count, 30);
}

} // namespace
