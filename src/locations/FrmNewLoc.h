// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "forms/Form.h"
#include "platform/Clock.h"
#include "store/XmlText.h"

#include <QStringList>

#include <memory>

class SimpleXML;
namespace Ui {
class FrmNewLoc;
}

/// Finds a place through the service, by zip code or by country and name, and adds it to settings.xml. Its
/// OnLoad requests the countries and unloads the window again if there are none. While it is open the list of
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
    // A paint event does not call Refresh: each call would cause the next paint event.
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
    /// False if there is nothing to list: no match, or more matches than the user wants to see.
    [[nodiscard]] bool WantsMatches(const SimpleXML& count);
    void FillResults(const SimpleXML& cities);
    void AddLocation();
    void FetchAndStore(const QString& atlasId);

    /// The root of a reply as a document of its own. Null if the request failed, and if the root has more
    /// than @p mostChildren children, more markup than they need, or a nested root. A document with another
    /// root reads as an empty one. Serves events: the window may have been unloaded meanwhile.
    [[nodiscard]] std::unique_ptr<SimpleXML> Request(const QString& url,
                                                     int mostChildren = XmlLimits::kChildren) const;
    void Say(const QString& message) const;
    void FailAndUnload(const QString& message);

    std::unique_ptr<Ui::FrmNewLoc> m_ui;
    /// Keys of the shown lines, by row.
    QStringList CombStateID;
    QStringList LstSearchResultsHid;
    std::unique_ptr<Timer> Timer1;
};
