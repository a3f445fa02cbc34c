// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"
#include "platform/Timers.h"
#include "store/XmlText.h"

#include <QStringList>

#include <memory>

class SimpleXML;
namespace Ui {
class FrmNewLoc;
}

/// Finds a place through the service, by zip code or by country and name, and adds it to settings.xml. Its
/// Load asks for the countries and unloads the window again if there are none. While it is open the list of
/// places is disabled.
class FrmNewLoc final : public Form
{
    Q_OBJECT

public:
    static constexpr QLatin1String kName{"FrmNewLoc"};

    explicit FrmNewLoc(Forms& forms);
    ~FrmNewLoc() override;

protected:
    void OnLoad() override;
    void OnUnload() override;
    // There is no repaint on paint: a whole window is painted anyway, and painting from there would never
    // end.
    void OnGotFocus() override { Refresh(); }

private:
    void ConnectControls();
    void ShowProgress();
    void HideProgress();
    void Tick();

    void LookUpZipCode();
    void SearchZipCode();
    void LookUpCity();
    void SearchCity();
    /// False if there is nothing to list: no match, or more than the user wants to see.
    [[nodiscard]] bool WantsMatches(const SimpleXML& count);
    void FillResults(const SimpleXML& cities);
    void AddLocation();
    void FetchAndStore(const QString& atlasId);

    /// The root of a reply on an object of its own, or nothing if the request failed. A document with another
    /// root reads as an empty one, and one with more children, or more below them, or roots deep within,
    /// counts as none that came. Serves events: the window may have been unloaded meanwhile.
    [[nodiscard]] std::unique_ptr<SimpleXML> Request(const QString& url,
                                                     int mostChildren = XmlLimits::kChildren) const;
    void Say(const QString& message) const;
    void SayAndUnload(const QString& message);

    std::unique_ptr<Ui::FrmNewLoc> m_ui;
    /// Keys behind the shown lists, row by row.
    QStringList CombStateID;
    QStringList LstSearchResultsHid;
    std::unique_ptr<Timer> Timer1;
};
