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
/// that can't be loaded or saved is no error: the change is lost without a message.
void StoreAtOnce(SimpleXML& settings, const Attributes& attributes, const QString& path = kAlertsPath);

/// The common state of the pages of the settings dialog: document, flags and failure rule.
class DialogContext final
{
public:
    explicit DialogContext(Form& dialog);

    /// Set while code sets controls, so that their handlers store nothing.
    bool loading = false;
    /// The page that is shown, 1 to 8.
    std::int16_t currentTab = 0;

    /// The dialog's document of settings.xml, created on first use.
    [[nodiscard]] SimpleXML& settingsDoc();

    // Intended: these functions ignore failures. If the file can't be read or written, the handlers continue
    // with the document in memory, and a change is lost without a message.
    void Load();
    void Save();
    [[nodiscard]] QString Read(const QString& attribute, const QString& path);
    void Write(const QString& attribute, const QString& value, const QString& path);
    /// Stores a change of the user at once: loads the file, writes the attributes and saves it. Does nothing
    /// while loading.
    void Store(const Attributes& attributes, const QString& path = kAlertsPath);

    /// Runs @p routine under the failure rule: any error in it unloads the dialog without a message, and the
    /// call returns normally. Handlers that the routine raises have the same rule themselves.
    void RunOrUnload(const std::function<void()>& routine);
    /// A handler for a control, under the failure rule.
    [[nodiscard]] std::function<void()> RunOrUnloadHandler(std::function<void()> routine);

    /// The step that the user must take before a prayer can have a mobile alert; empty if mobile alerts are
    /// enabled and the device is confirmed. Reads settingsDoc without loading it.
    [[nodiscard]] QString MissingStepForMobile();

    [[nodiscard]] Form& Dialog() const { return m_dialog; }
    [[nodiscard]] const Platform& GetPlatform() const;

private:
    Form& m_dialog;
    std::optional<SimpleXML> m_settingsDoc;
};

/// True only for "true"; any other value counts as not set.
[[nodiscard]] inline bool IsTrue(const QString& value)
{
    return value == u"true";
}

[[nodiscard]] inline QString TrueOrFalse(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
