// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"

#include <QStringList>

#include <memory>

namespace Ui {
class FrmLocation;
}

/// The list of places: makes one current, deletes one, leads to the search for a new one. While it is open
/// the main window is disabled.
class FrmLocation final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmLocation"};

    explicit FrmLocation(Forms& forms);
    ~FrmLocation() override;

    /// Reads the list again from settings.xml. A failure shows a message and unloads the window.
    void RefreshList();

protected:
    void OnLoad() override;
    void OnUnload() override;
    // A paint event does not call Refresh: each call would cause the next paint event.
    void OnGotFocus() override { Refresh(); }

private:
    void ConnectControls();
    void ReadPlaces();
    void SetCurrent();
    void Delete();
    void OpenNewLocation();
    void FailAndUnload(const QString& message);
    /// Runs an action of the user; any failure in it shows a message and unloads the window.
    void RunOrUnload(void (FrmLocation::*action)());

    std::unique_ptr<Ui::FrmLocation> m_ui;
    /// Element names of the places, by row of LstLocations.
    QStringList LstLocHidden;
};
