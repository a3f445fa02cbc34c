// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/SimpleXML.h"

/// Walks the child nodes of one element. Children are handed out by name, not by place: of several children
/// with one name each reads as the first. The walk is live, it counts on by index whatever happens to the
/// list meanwhile.
class EnumerationObject final
{
public:
    EnumerationObject(const Platform& platform, const std::shared_ptr<DomDocument>& document,
                      const QString& Path);

    /// Another parent from here on; the index stays.
    void SetPath(const QString& Path) { BasePath = Path; }
    [[nodiscard]] bool hasMoreElements() const;
    /// A SimpleXML on the same live document whose "current" is the next child; nothing past the end.
    [[nodiscard]] std::unique_ptr<SimpleXML> nextElement();

private:
    [[nodiscard]] DomNode Parent() const;

    const Platform& m_platform;
    std::shared_ptr<DomDocument> xmldoc;
    QString BasePath;
    QString ChildPath;
    int ChildIndex = 0;
};
