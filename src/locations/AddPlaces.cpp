// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/AddPlaces.h"

#include "locations/Children.h"
#include "store/Configuration.h"

namespace {

const QString kPlaces = QStringLiteral("//root//locations");

// The name alone tells places apart, whatever their identifiers.
bool HoldsPlace(const SimpleXML& settings, const QString& key)
{
    bool holds = false;
    WalkChildren(settings, kPlaces, [&](const SimpleXML& location) {
        holds = location.ElementName() == key;
        return !holds;
    });
    return holds;
}

} // namespace

bool AddPlaces(const DomDocuments& documents, const SimpleXML& places)
{
    SimpleXML settings(documents);
    settings.Load(kSettingsFile);
    bool areNew = true;
    // Each place leaves the reply as it is stored, so that of several the walk passes over every second one.
    // The service sends one.
    WalkChildren(places, QStringLiteral("current"), [&](SimpleXML& location) {
        areNew = !HoldsPlace(settings, location.ElementName());
        if (areNew) {
            // No name is refused, though a path finds the first element of a name wherever it stands: a place
            // called "alerts" hides the settings of that name until it is deleted.
            settings.AddSimpleXML(location, kPlaces);
            // At once, and unchecked: a file that can't be written loses the place, and the list shows so.
            settings.Save(kSettingsFile);
        }
        return areNew;
    });
    return areNew;
}
