// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/Places.h"

#include "engine/Prayers.h"
#include "store/Configuration.h"
#include "support/Conversions.h"
#include "support/RuntimeError.h"

#include <algorithm>
#include <array>

namespace {

// A path finds the first element of a name at any depth. A place with such a name, or with such an element in
// it, could hide the settings of that name.
bool IsNameOfSettings(const QString& name)
{
    static constexpr std::array kNames{QLatin1String("root"),      QLatin1String("app"),
                                       QLatin1String("DefaultAd"), QLatin1String("version"),
                                       QLatin1String("locations"), QLatin1String("alerts")};
    return std::find(kNames.begin(), kNames.end(), name) != kNames.end() ||
           std::any_of(kPrayers.begin(), kPrayers.end(),
                       [&name](const Prayer& prayer) { return prayer.element == name; });
}

struct Number
{
    QLatin1String attribute;
    double least = 0.0;
    double most = 0.0;
};

// The scheduler refuses numbers far outside these limits, and the program could not start with the place.
constexpr std::array kNumbers{Number{QLatin1String("latitude_final"), -90.0, 90.0},
                              Number{QLatin1String("longitude_final"), -180.0, 180.0},
                              Number{QLatin1String("time_zone2"), -12.0, 14.0}};

// With a decimal point and without group separators: every locale reads such a text as the same number.
bool IsWithin(const QString& text, const Number& number)
{
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    if (!IsNumeric(text, plain)) {
        return false;
    }
    const double value = ToDouble(text, plain);
    return value >= number.least && value <= number.most;
}

QString AttributeOf(const DomNode& element, const QString& name)
{
    try {
        return element.Attribute(name);
    } catch (const RuntimeError&) {
        return {};
    }
}

// Elements within a place are checked as well: a path could find one of them instead of a later place of the
// same name. Such an element needs no numbers, but the numbers that it has must be valid.
bool IsUsable(const DomNode& element, bool needsNumbers)
{
    if (element.NodeValue()) {
        return true; // a text or a comment, which no path finds
    }
    if (IsNameOfSettings(element.BaseName())) {
        return false;
    }
    for (const Number& number : kNumbers) {
        const QString text = AttributeOf(element, number.attribute);
        if ((needsNumbers || !text.isEmpty()) && !IsWithin(text, number)) {
            return false;
        }
    }
    for (int i = 0; i < element.ChildCount(); ++i) {
        if (!IsUsable(element.Child(i), false)) {
            return false;
        }
    }
    return true;
}

// Places are compared by element name only, not by identifier.
bool HoldsPlace(const SimpleXML& settings, const QString& key)
{
    bool holds = false;
    WalkChildren(settings, kLocationsPath, [&](const SimpleXML& location) {
        holds = location.ElementName() == key;
        return !holds;
    });
    return holds;
}

} // namespace

bool AreUsablePlaces(const SimpleXML& places)
{
    const DomNode root = places.xmldoc->DocumentElement();
    const int count = root ? root.ChildCount() : 0;
    for (int i = 0; i < count; ++i) {
        if (!IsUsable(root.Child(i), true)) {
            return false;
        }
    }
    return true;
}

bool AddPlaces(const Platform& platform, const SimpleXML& places)
{
    SimpleXML settings(platform);
    settings.Load(kSettingsFile);
    bool areNew = true;
    // Intended: storing a place removes it from the reply, so that the loop skips every second place. The
    // service sends one.
    WalkChildren(places, kCurrentPath, [&](SimpleXML& location) {
        areNew = !HoldsPlace(settings, location.ElementName());
        if (areNew) {
            settings.AddSimpleXML(location, kLocationsPath);
            // Intended: the result is ignored. If the file can't be written, the place is missing from the
            // list.
            settings.Save(kSettingsFile);
        }
        return areNew;
    });
    return areNew;
}
