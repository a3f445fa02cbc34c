// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/Configuration.h"
#include "store/SimpleXML.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

class Form;
struct Platform;

/// Attributes of one element with their values.
using Attributes = std::vector<std::pair<QString, QString>>;

/// Loads settings.xml into @p settings, writes the attributes of the element at @p path and saves it. A file
/// that can't be loaded or saved is no error: the change is lost without a word.
void StoreAtOnce(SimpleXML& settings, const Attributes& attributes, const QString& path = kAlertsPath);

/// What the pages of the settings dialog share: its document, its flags and its failure rule.
class DialogContext final
{
public:
    explicit DialogContext(Form& dialog);

    /// Set while code is setting controls, so that the handlers which those sets raise write nothing.
    bool loading = false;
    /// The page showing, 1 to 8.
    std::int16_t currentTab = 0;

    /// The dialog's own document over settings.xml, made on first use.
    [[nodiscard]] SimpleXML& settingsDoc();

    // Results of these are never looked at: with a file that can't be read or written the handlers go on with
    // what there is, and a change is lost without a word.
    void Load();
    void Save();
    [[nodiscard]] QString Read(const QString& attribute, const QString& path);
    void Write(const QString& attribute, const QString& value, const QString& path);
    /// Stores a change of the user at once: loads the file, writes the attributes and saves it. Does nothing
    /// while loading.
    void Store(const Attributes& attributes, const QString& path = kAlertsPath);

    /// The failure rule: any error inside @p routine closes the dialog through its normal unload, silently,
    /// and this returns as if nothing had happened. Handlers that the routine raises have their own rule.
    void Armed(const std::function<void()>& routine);
    /// A handler for a control, under the failure rule.
    [[nodiscard]] std::function<void()> ArmedHandler(std::function<void()> routine);

    /// Whether mobile alerts are enabled and the device is confirmed, in settingsDoc as it stands.
    [[nodiscard]] bool IsMobileConfirmed();

    [[nodiscard]] Form& Dialog() const { return m_dialog; }
    [[nodiscard]] const Platform& Outside() const;

private:
    Form& m_dialog;
    std::optional<SimpleXML> m_settingsDoc;
};

/// Exactly "true"; anything else counts as not set.
[[nodiscard]] inline bool IsTrue(const QString& value)
{
    return value == u"true";
}

[[nodiscard]] inline QString TrueOrFalse(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
