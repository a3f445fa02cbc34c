// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/SimpleXML.h"

/// Iterates over the child nodes of one element. Intended: a child is found by its name, not by its position,
/// so that of several children with one name each reads as the first. The index counts on in the live
/// document, even if children are added or removed meanwhile.
class EnumerationObject final
{
public:
    EnumerationObject(const Platform& platform, const std::shared_ptr<DomDocument>& document,
                      const QString& Path);

    /// Continues at the same index of another parent.
    void SetPath(const QString& Path) { BasePath = Path; }
    [[nodiscard]] bool hasMoreElements() const;
    /// A SimpleXML on the same live document whose remembered path is the next child; nullptr past the end.
    [[nodiscard]] std::unique_ptr<SimpleXML> nextElement();

private:
    [[nodiscard]] DomNode Parent() const;

    const Platform& m_platform;
    std::shared_ptr<DomDocument> xmldoc;
    QString BasePath;
    QString ChildPath;
    int ChildIndex = 0;
};
