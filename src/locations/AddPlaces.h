// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class SimpleXML;
struct Platform;

/// Whether the children of the root of @p places can be stored without harm to the settings: each element has
/// its latitude (-90 to 90), longitude (-180 to 180) and zone (-12 to 14), both ends included and written
/// with a point on every locale, and nothing in it is called as an element of settings.xml. True without
/// children.
[[nodiscard]] bool AreUsablePlaces(const SimpleXML& places);

/// Moves the children of the node at the remembered path of @p places unchanged behind the places of
/// settings.xml. False, after what was stored before it, at the first one whose name is taken. Whether the
/// file could be written is not looked at.
[[nodiscard]] bool AddPlaces(const Platform& platform, const SimpleXML& places);
