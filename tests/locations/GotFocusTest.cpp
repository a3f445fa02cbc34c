// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/PaintCount.h"
#include "locations/LocationsFixture.h"

namespace {

using GotFocusTest = LocationsFixture;

TEST_F(GotFocusTest, eachWindow_isRepaintedAtOnce)
{
    OpenSearch();
    for (const QLatin1String name : {FrmLocation::kName, FrmNewLoc::kName, FrmWait::kName}) {
        Form& window = forms.Touch(name);
        window.Show();
        // Another window has the focus meanwhile, and all pending paints are done.
        QApplication::setActiveWindow(nullptr);
        QTest::qWait(0);
        window.PaintNow();
        const PaintCount count(name);
        QEvent activated(QEvent::WindowActivate);
        QCoreApplication::sendEvent(&window, &activated);
        EXPECT_EQ(count.paints, 1) << name.data() << ": inside the event";
    }
}

} // namespace
