// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "fakes/FakeMain.h"
#include "fakes/FakePlatform.h"
#include "fakes/MemoryFiles.h"
#include "fakes/SettingsFile.h"
#include "forms/Forms.h"
#include "fuzz/FuzzTarget.h"
#include "store/SimpleXML.h"
#include "store/XmlText.h"
#include "support/RuntimeError.h"

#include <QCoreApplication>

/// Loads settings.xml. False if it can't be used.
[[nodiscard]] inline bool LoadSettings(Configuration& held, const Platform& platform)
{
    try {
        LoadConfiguration(held, platform);
        return true;
    } catch (const RuntimeError& error) {
        Demand(error.Number() == ErrorNumber::kConfiguration, "a bad file has one error");
        return false;
    }
}

/// A main window that reads settings.xml as the real one does.
class FuzzMain final : public FakeMain
{
public:
    using FakeMain::FakeMain;

    int UpdateEverything() override { return LoadSettings(Variables().Settings, GetPlatform()) ? 1 : 0; }
};

/// The environment of one input: the platform, and a main window, in the tray, that has read a valid
/// settings.xml.
class FuzzWorld final
{
public:
    FuzzWorld()
    {
        forms.Register(FuzzMain::kName, [this] { return std::make_unique<FuzzMain>(forms); });
        files.Write(kSettingsFile, SettingsText().toUtf8());
        main = &forms.Touch<FuzzMain>();
        main->UpdateEverything();
        main->Variables().AdTimer = 600.0F;
        platform.http.reachable = true;
    }
    ~FuzzWorld()
    {
        // Deferred events must not run in the next input.
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    FuzzWorld(const FuzzWorld&) = delete;
    FuzzWorld& operator=(const FuzzWorld&) = delete;

    [[nodiscard]] QByteArray Settings() const
    {
        return files.Read(kSettingsFile, XmlLimits::kBytes).value_or(QByteArray());
    }
    [[nodiscard]] bool IsSettingsWhole() const { return SimpleXML(platform.interfaces).Load(kSettingsFile); }
    [[nodiscard]] QString Setting(const QString& name, const QString& path) const
    {
        SimpleXML settings(platform.interfaces);
        settings.Load(kSettingsFile);
        return settings.GetAttribute(name, path);
    }
    /// The control of that name, which must be there.
    template <typename Control>
    [[nodiscard]] static Control& Find(const Form& form, const char* name)
    {
        auto* const control = form.findChild<Control*>(QLatin1String(name));
        Demand(control != nullptr, name);
        return *control;
    }
    /// Input from outside must not end the program or reach its handler of unexpected errors.
    void DemandAlive() const
    {
        Demand(platform.process.ended == 0, "the program goes on");
        for (const FakeMessageBoxes::Box& box : platform.boxes.boxes) {
            Demand(box.title == MessageBoxes::kDefaultTitle, "no box tells of an error of the program");
            Demand(!box.text.startsWith(u"Run-time error"), "no error is left to the last resort");
        }
    }

    FakePlatformOn<MemoryFiles> platform;
    MemoryFiles& files = platform.files;
    Forms forms{platform.interfaces};
    FuzzMain* main = nullptr;
};
