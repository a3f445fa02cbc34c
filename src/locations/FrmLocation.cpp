// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmLocation.h"

#include "forms/Areas.h"
#include "forms/Forms.h"
#include "locations/FrmNewLoc.h"
#include "locations/FrmWait.h"
#include "locations/Places.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "support/RuntimeError.h"
#include "ui_FrmLocation.h"

#include <array>
#include <functional>

namespace {

const QString kCurrent = QStringLiteral("Current");
const QString kListProblem = QStringLiteral("There was a problem retrieving list of locations.");

QString ListAt(const QStringList& list, int row)
{
    return row >= 0 && row < list.size() ? list.at(row) : QString();
}

} // namespace

FrmLocation::FrmLocation(Forms& forms)
    : Form(forms, kName, Qt::Window)
    , m_ui(std::make_unique<Ui::FrmLocation>())
{
    m_ui->setupUi(this);
    ConnectControls();
    CentreOver(forms.Loaded(MainForm::kName));
}

FrmLocation::~FrmLocation() = default;

void FrmLocation::ConnectControls()
{
    m_ui->LstLocations->OnDoubleClick([this] { RunOrUnload(&FrmLocation::SetCurrent); });
    connect(m_ui->CmdSet, &QPushButton::clicked, this, [this] { RunOrUnload(&FrmLocation::SetCurrent); });
    connect(m_ui->CmdDel, &QPushButton::clicked, this, [this] { RunOrUnload(&FrmLocation::Delete); });
    m_ui->LblNewLocLink->OnClick([this] { Handle([this] { OpenNewLocation(); }); });
    m_ui->LblNewLocLink->OnMouseMove([this] { SetHandPointer(); });
    new HoverArea(this, [this] { SetDefaultPointer(); });
}

void FrmLocation::OnLoad()
{
    try {
        RefreshList();
    } catch (const RuntimeError&) {
        FailAndUnload(QStringLiteral("There was a problem encountered while loading this form."));
    }
}

void FrmLocation::OnUnload()
{
    MainForm& main = Siblings().Main();
    // Intended: the main window shows the values in memory, after a deletion still those of the deleted
    // place.
    main.PopLocation();
    main.PopPrayerFrame();
    Siblings().ReturnToMain();
}

void FrmLocation::FailAndUnload(const QString& message)
{
    GetPlatform().boxes.Show(message);
    Unload();
}

void FrmLocation::RunOrUnload(void (FrmLocation::*action)())
{
    Handle([this, action] {
        try {
            (this->*action)();
        } catch (const RuntimeError&) {
            FailAndUnload(kListProblem);
        }
    });
}

void FrmLocation::RefreshList()
{
    KeepWhile([this] {
        try {
            ReadPlaces();
        } catch (const RuntimeError&) {
            FailAndUnload(kListProblem);
        }
    });
}

void FrmLocation::ReadPlaces()
{
    SimpleXML settings(GetPlatform());
    if (!settings.Load(kSettingsFile)) {
        FailAndUnload(kListProblem);
        return;
    }
    m_ui->LstLocations->clear();
    LstLocHidden.clear();
    const QString current = settings.GetAttribute(kCurrent, kLocationsPath);
    QStringList lines;
    WalkChildren(settings, kLocationsPath, [&](const SimpleXML& location) {
        lines << location.GetAttribute(QStringLiteral("city"), kCurrentPath) + QStringLiteral(", ") +
                     location.GetAttribute(QStringLiteral("state"), kCurrentPath);
        LstLocHidden << location.ElementName();
        return true;
    });
    m_ui->LstLocations->addItems(lines);
    // If Current names no place, no row is selected.
    m_ui->LstLocations->SetListIndex(static_cast<int>(LstLocHidden.lastIndexOf(current)));
}

void FrmLocation::SetCurrent()
{
    QString key = ListAt(LstLocHidden, m_ui->LstLocations->ListIndex());
    SimpleXML settings(GetPlatform());
    settings.Load(kSettingsFile);
    const QString before = settings.GetAttribute(kCurrent, kLocationsPath);
    for (;;) {
        settings.AddAttributeByName(kCurrent, key, kLocationsPath);
        settings.Save(kSettingsFile);
        // Without a main window no attempt can succeed, and the program is about to end. If this list was
        // closed under the message, the old place has been stored again by now.
        if (Siblings().Main().UpdateEverything() != 0 || Siblings().Loaded(MainForm::kName) == nullptr ||
            !IsLoaded()) {
            Unload();
            return;
        }
        // Intended: no limit. If the old place fails too, the message comes again after each answer. A place
        // is tested by storing it, and only the old place may remain as the current one.
        GetPlatform().boxes.Show(
            QStringLiteral("Can not load setting for this area, location will not be changed."));
        key = before;
    }
}

void FrmLocation::Delete()
{
    const int row = m_ui->LstLocations->ListIndex();
    // Intended: the question also comes for the last place, which can't be removed.
    if (!GetPlatform().boxes.Ask(QStringLiteral("Are you sure you want to remove: ") +
                                 m_ui->LstLocations->List(row)) ||
        !IsLoaded()) {
        return;
    }
    const QString key = ListAt(LstLocHidden, row);
    if (LstLocHidden.size() == 1) {
        GetPlatform().boxes.Show(QStringLiteral("Can not remove last location from list."));
        return;
    }
    SimpleXML settings(GetPlatform());
    if (!settings.Load(kSettingsFile)) {
        GetPlatform().boxes.Show(QStringLiteral("Could not change default location."));
        return;
    }
    settings.RemoveElement(true, kLocationsPath + QStringLiteral("//") + key);
    if (settings.GetAttribute(kCurrent, kLocationsPath) == key) {
        const QString first = settings.xmldoc->SelectSingleNode(kLocationsPath).Child(0).NodeName();
        settings.AddAttributeByName(kCurrent, first, kLocationsPath);
    }
    // Intended: the main window keeps the deleted place until something else makes it read the file.
    settings.Save(kSettingsFile);
    RefreshList();
}

void FrmLocation::OpenNewLocation()
{
    DisabledControl link(*this, *m_ui->LblNewLocLink);
    const std::array<std::function<void()>, 7> steps{
        [this] { Enable(false); },
        [this] { Siblings().Touch(FrmWait::kName).Show(); },
        [this] {
            Variables().ActiveForm = FrmWait::kName;
            Siblings().Touch(FrmWait::kName).PaintNow();
        },
        // OnLoad of the window sends a request and may unload the window again.
        [this] { Siblings().Touch(FrmNewLoc::kName).Show(); },
        [this] { Variables().ActiveForm = FrmNewLoc::kName; },
        [this] { Siblings().Unload(FrmWait::kName); },
        [&link] { link.Enable(); },
    };
    constexpr std::size_t kUnloadWait = 5;

    for (std::size_t step = 0; step < steps.size();) {
        if (!IsLoaded()) {
            // This list was closed during a request: close the windows in front of it too.
            Siblings().Unload(FrmNewLoc::kName);
            Siblings().Unload(FrmWait::kName);
            return;
        }
        try {
            steps.at(step)();
            ++step;
        } catch (const RuntimeError& error) {
            if (error.Number() == ErrorNumber::kFormUnloaded) {
                step = kUnloadWait;
                continue;
            }
            // Intended: despite this text the program continues and repeats the failed step.
            GetPlatform().boxes.Show(
                QStringLiteral("An error has occured, The application will be terminated."),
                QStringLiteral("Error - 7"));
        }
    }
}
