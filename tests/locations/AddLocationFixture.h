// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "locations/LocationsFixture.h"

inline const QString kNoCityInfo =
    QStringLiteral("Failed to get city info. Please verify internet connection.");
inline constexpr const char* kCairoReply =
    R"(<root><Cairo atlas_id="EG-1" city="Cairo" state="Egypt" longitude="31.25 E" longitude_final="31.25" latitude="30.05 N" latitude_final="30.05" time_zone2="2" note="&quot;mother&quot; &amp; more &lt;"/></root>)";

/// The search window with two results, and a service that knows their place.
class AddLocationFixture : public LocationsFixture
{
protected:
    AddLocationFixture()
    {
        Answer("getUsCanCity.pl",
               "<root><a city=\"Cairo\" atlas_id=\"EG-1\"/><b city=\"Cairo\" atlas_id=\"EG-2\"/></root>");
        Info(kCairoReply);
    }
    void Info(const QByteArray& reply) { Answer("getCityInfo.pl", reply); }
    /// An element that can be stored: the city is called as the element, the state is "s".
    static QByteArray Place(const QByteArray& name, const QByteArray& inside = QByteArray())
    {
        return '<' + name + " city=\"" + name +
               "\" state=\"s\" longitude_final=\"1\" latitude_final=\"2\" time_zone2=\"3\">" + inside + "</" +
               name + '>';
    }
    static QByteArray Reply(const QByteArray& children) { return "<root>" + children + "</root>"; }

    /// The search window with two results and no selection.
    FrmNewLoc& OpenResults()
    {
        FrmNewLoc& window = OpenSearch();
        SearchZip(window);
        platform.http.requests.clear();
        return window;
    }
    void AddRow(const Form& window, int row)
    {
        ClickRow(Results(window), row);
        ClickOn(window, "CmdAdd");
    }
    void ExpectStillOpen(const Form& window) const
    {
        EXPECT_EQ(forms.Loaded(FrmNewLoc::kName), &window);
        EXPECT_TRUE(window.isVisible() && Find<QWidget>(window, "CmdAdd").isEnabled());
        EXPECT_EQ(main->Variables().ActiveForm, QStringLiteral("FrmNewLoc"));
    }
};
