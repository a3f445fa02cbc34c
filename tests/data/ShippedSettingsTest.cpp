// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

namespace {

// Every attribute of the file outside the list of places, with the value that a new installation starts from.
struct Attribute
{
    const char* path;
    const char* name;
    const char* value;
};

constexpr std::array kAttributes{
    Attribute{"//root//app", "FirstRun", "true"},
    Attribute{"//root//app", "pid", ""},
    Attribute{"//root//app", "dist", "dbeacon"},
    Attribute{"//root//app//version", "remind", ""},
    Attribute{"//root//locations", "Current", "Makkah"},
    Attribute{"//root//alerts", "angle1", "-18"},
    Attribute{"//root//alerts", "angle2", "-17"},
    Attribute{"//root//alerts", "method", "Muslim World League"},
    Attribute{"//root//alerts", "useAdvWarn", "false"},
    Attribute{"//root//alerts", "advWarn", "10"},
    Attribute{"//root//alerts", "asrMethode", "shafi"},
    Attribute{"//root//alerts", "useDLS", "false"},
    Attribute{"//root//alerts", "hourmode", "24"},
    Attribute{"//root//alerts", "mobileEnabled", "false"},
    Attribute{"//root//alerts", "mobileDID", ""},
    Attribute{"//root//alerts", "mobilePC", ""},
    Attribute{"//root//alerts", "mobileConfirm", "0"},
};

struct Prayer
{
    const char* path;
    const char* enabled;
};

// Shuruq ends the time of Fajr and calls nobody to prayer, so a new installation is silent there.
constexpr std::array kPrayers{
    Prayer{"//root//alerts//fajr", "true"},    Prayer{"//root//alerts//shuruq", "false"},
    Prayer{"//root//alerts//duhr", "true"},    Prayer{"//root//alerts//asr", "true"},
    Prayer{"//root//alerts//maghrib", "true"}, Prayer{"//root//alerts//isha", "true"},
};

constexpr std::string_view kBase64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string DecodeBase64(std::string_view text)
{
    std::string bytes;
    unsigned int pool = 0;
    int bits = 0;
    for (const char letter : text.substr(0, text.find('='))) {
        pool = (pool << 6U) | static_cast<unsigned int>(kBase64Alphabet.find(letter));
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>((pool >> static_cast<unsigned int>(bits)) & 0xFFU);
        }
    }
    return bytes;
}

class ShippedSettings : public testing::Test
{
protected:
    void SetUp() override
    {
        const pugi::xml_parse_result result = m_document.load_file(DUSKBEACON_SHIPPED_SETTINGS);
        ASSERT_TRUE(result) << result.description();
    }

    // A path picks its first match at any depth, so a second one would shadow what is meant.
    pugi::xml_node Only(const std::string& path) const
    {
        const pugi::xpath_node_set found = m_document.select_nodes(path.c_str());
        EXPECT_EQ(found.size(), 1U) << path;
        return found.empty() ? pugi::xml_node() : found.first().node();
    }

    pugi::xml_document m_document;
};

std::ptrdiff_t AttributeCount(const pugi::xml_node& node)
{
    return std::distance(node.attributes_begin(), node.attributes_end());
}

TEST_F(ShippedSettings, attributesOfOptions_holdTheirStartingValues)
{
    std::map<std::string, std::ptrdiff_t> count;
    for (const Attribute& wanted : kAttributes) {
        const pugi::xml_attribute found = Only(wanted.path).attribute(wanted.name);
        EXPECT_TRUE(found) << wanted.path << " has no " << wanted.name;
        EXPECT_STREQ(found.value(), wanted.value) << wanted.path << ' ' << wanted.name;
        ++count[wanted.path];
    }
    for (const auto& [path, number] : count) {
        EXPECT_EQ(AttributeCount(Only(path)), number) << path;
    }
}

TEST_F(ShippedSettings, prayers_haveAPopUpAndNothingLouder)
{
    for (const Prayer& prayer : kPrayers) {
        const pugi::xml_node node = Only(prayer.path);
        EXPECT_STREQ(node.attribute("enabled").value(), prayer.enabled) << prayer.path;
        EXPECT_STREQ(node.attribute("popup").value(), "true") << prayer.path;
        EXPECT_STREQ(node.attribute("mobil").value(), "false") << prayer.path;
        EXPECT_STREQ(node.attribute("play").value(), "false") << prayer.path;
        EXPECT_TRUE(node.attribute("audioFile")) << prayer.path;
        EXPECT_STREQ(node.attribute("audioFile").value(), "") << prayer.path;
        EXPECT_EQ(AttributeCount(node), 5) << prayer.path;
    }
}

TEST_F(ShippedSettings, tree_holdsTheseElementsInThisOrder)
{
    std::string children;
    for (const char* path : {"//root", "//root//app", "//root//alerts"}) {
        children += path;
        children += ':';
        for (const pugi::xml_node& child : Only(path).children()) {
            children += ' ';
            children += child.name();
        }
        children += '\n';
    }
    EXPECT_EQ(children, "//root: app locations alerts\n"
                        "//root//app: DefaultAd version\n"
                        "//root//alerts: fajr shuruq duhr asr maghrib isha\n");
}

TEST_F(ShippedSettings, defaultAd_isOneLineOfBase64)
{
    // The decoder counts a blank or a line end as a character of value 0, and everything behind it shifts.
    const std::string ad = Only("//root//app//DefaultAd").attribute("Ad").value();
    ASSERT_FALSE(ad.empty());
    EXPECT_EQ(ad.size() % 4, 0U);
    const std::size_t end = ad.find_first_not_of(kBase64Alphabet);
    EXPECT_EQ(ad.substr(std::min(end, ad.size())).find_first_not_of('='), std::string::npos) << ad;
}

TEST_F(ShippedSettings, defaultAd_decodesToAPlainGreeting)
{
    const std::string html = DecodeBase64(Only("//root//app//DefaultAd").attribute("Ad").value());
    EXPECT_EQ(html, R"(<div align="center"><b><font size="5" color="#1f4e5f">Dusk Beacon</font></b>)"
                    R"(<br>Peace be upon you. May each prayer find you ready.</div>)");
}

TEST(ShippedSettingsFile, bytes_arePlainAsciiWithUnixLineEnds)
{
    std::ifstream file(DUSKBEACON_SHIPPED_SETTINGS, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(bytes.substr(0, 38), R"(<?xml version="1.0" encoding="UTF-8"?>)");
    EXPECT_TRUE(std::all_of(bytes.begin(), bytes.end(),
                            [](char byte) { return byte == '\n' || (byte >= ' ' && byte <= '~'); }));
    EXPECT_EQ(bytes.back(), '\n');
}

} // namespace
