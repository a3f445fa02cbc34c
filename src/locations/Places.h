// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/EnumerationObject.h"
#include "store/SimpleXML.h"

#include <memory>

struct Platform;

/// Calls @p visit with each child of the element at @p path until it returns false. Of several children with
/// one name each reads as the first: see EnumerationObject.
template <typename Visit>
void WalkChildren(const SimpleXML& parent, const QString& path, Visit visit)
{
    const std::unique_ptr<EnumerationObject> children = parent.getEnumeration(path);
    while (children->hasMoreElements()) {
        const std::unique_ptr<SimpleXML> child = children->nextElement();
        if (!child || !visit(*child)) {
            return;
        }
    }
}

/// Whether the children of the root of @p places can be stored without harm to the settings. Each element
/// needs a latitude (-90 to 90), a longitude (-180 to 180) and a zone (-12 to 14), both ends included, with a
/// decimal point on every locale, and no element may have a name that settings.xml uses. True without
/// children.
[[nodiscard]] bool AreUsablePlaces(const SimpleXML& places);

/// Moves the children of the node at the current path of @p places, unchanged, to the end of the places of
/// settings.xml. At the first place whose name exists already it stops and returns false; the places before
/// it stay stored. A failed save is ignored.
[[nodiscard]] bool AddPlaces(const Platform& platform, const SimpleXML& places);
