// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/EnumerationObject.h"
#include "store/SimpleXML.h"

#include <QStringList>

/// Calls @p visit with each child of the element at @p path until it returns false.
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

/// Reads two attributes of each child of the element at @p path into two lists.
inline std::pair<QStringList, QStringList> ReadPairs(const SimpleXML& parent, const QString& path,
                                                     const QString& shown, const QString& key)
{
    std::pair<QStringList, QStringList> pairs;
    WalkChildren(parent, path, [&](const SimpleXML& child) {
        pairs.first << child.GetAttribute(shown, kCurrentPath);
        pairs.second << child.GetAttribute(key, kCurrentPath);
        return true;
    });
    return pairs;
}
