// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class DomDocuments;
class SimpleXML;

/// Moves the children of the node at the remembered path of @p places unchanged behind the places of
/// settings.xml. False, after what was stored before it, at the first one whose name is taken. Whether the
/// file could be written is not looked at.
[[nodiscard]] bool AddPlaces(const DomDocuments& documents, const SimpleXML& places);
