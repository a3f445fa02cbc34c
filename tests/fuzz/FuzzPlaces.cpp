// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/PlainWindow.h"
#include "forms/Boxes.h"
#include "forms/LinkLabel.h"
#include "fuzz/FuzzWorld.h"
#include "fuzz/InputParts.h"
#include "locations/FrmLocation.h"
#include "locations/FrmNewLoc.h"

#include <QComboBox>
#include <QPushButton>

#include <pugixml.hpp>

#include <cmath>

namespace {

const QString kWait = QStringLiteral("FrmWait");

/// Names of the stored places, in order, without prefixes.
QStringList StoredPlaces(const FuzzWorld& world)
{
    pugi::xml_document document;
    const QByteArray bytes = world.Settings();
    document.load_buffer(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    QStringList names;
    for (const pugi::xml_node place : document.child("root").child("locations").children()) {
        names << QString::fromUtf8(place.name()).section(u':', -1);
    }
    return names;
}

// Added places follow the existing ones and have unique names.
void CheckAdded(const QStringList& before, const FuzzWorld& world)
{
    Demand(world.IsSettingsWhole(), "the service leaves a whole file");
    const QStringList after = StoredPlaces(world);
    Demand(after.mid(0, before.size()) == before, "no place is lost");
    for (const QString& name : after.mid(before.size())) {
        Demand(after.count(name) == 1, "a place has a name of its own");
    }
}

void CheckRequests(const FakeHttp& http)
{
    for (const QString& url : http.requests) {
        Demand(url.startsWith(QStringLiteral(DUSKBEACON_SERVICE_URL)), "the service alone is asked");
    }
}

void CheckList(const FuzzWorld& world, const FrmLocation& list)
{
    Demand(list.isEnabled() && FuzzWorld::Find<QWidget>(list, "LblNewLocLink").isEnabled(),
           "the list of places is usable");
    Demand(world.forms.Loaded(FrmNewLoc::kName) == nullptr && world.forms.Loaded(kWait) == nullptr,
           "nothing stands in front of the list of places");
    Demand(world.main->Variables().ActiveForm == list.Name(), "the list of places has the attention");
    // If a reply ends at a duplicate, the list does not show the places stored before it.
    Demand(FuzzWorld::Find<ListBox>(list, "LstLocations").count() <= StoredPlaces(world).size(),
           "the list shows what is stored");
}

void CheckSearch(const Form& search)
{
    for (const char* const name : {"LblGetLink", "LblGet2Link", "CmdAdd", "CmdCancel"}) {
        Demand(FuzzWorld::Find<QWidget>(search, name).isEnabled(), "the search stays usable");
    }
    Demand(!FuzzWorld::Find<QWidget>(search, "ProgressBar1").isVisible(), "nothing is under way");
}

void AddOne(FuzzWorld& world, const Form& search, Choices& choices)
{
    auto& results = FuzzWorld::Find<ListBox>(search, "LstSearchResults");
    if (results.count() > 0) {
        results.SetListIndex(choices.Among(results.count()));
    }
    const QStringList before = StoredPlaces(world);
    FuzzWorld::Find<QPushButton>(search, "CmdAdd").click();
    CheckAdded(before, world);
}

void UseSearch(FuzzWorld& world, const Form& search, Choices& choices)
{
    FuzzWorld::Find<TextBox>(search, "TxtZipCode").SetText(QStringLiteral("60601"));
    FuzzWorld::Find<LinkLabel>(search, "LblGetLink").Click();
    CheckSearch(search);
    AddOne(world, search, choices);
    if (!search.IsLoaded()) {
        return;
    }
    auto& countries = FuzzWorld::Find<QComboBox>(search, "CombState");
    Demand(countries.currentIndex() == -1, "no country is chosen yet");
    countries.setCurrentIndex(choices.Among(countries.count()));
    FuzzWorld::Find<TextBox>(search, "TxtCity").SetText(QStringLiteral("Ca"));
    FuzzWorld::Find<LinkLabel>(search, "LblGet2Link").Click();
    CheckSearch(search);
    AddOne(world, search, choices);
    if (search.IsLoaded()) {
        CheckSearch(search);
        FuzzWorld::Find<QPushButton>(search, "CmdCancel").click();
    }
}

// The chosen place becomes current, or the place before stays: the settings can always be loaded.
void SetCurrent(FuzzWorld& world, const FrmLocation& list, Choices& choices)
{
    auto& rows = FuzzWorld::Find<ListBox>(list, "LstLocations");
    rows.SetListIndex(choices.Among(rows.count()));
    int refusals = 0;
    world.platform.boxes.whileOpen = [&] { Demand(++refusals == 1, "the place before is still good"); };
    FuzzWorld::Find<QPushButton>(list, "CmdSet").click();
    world.platform.boxes.whileOpen = nullptr;
    Demand(!list.IsLoaded(), "the list closes in the end");
    Configuration held;
    Demand(LoadSettings(held, world.platform.interfaces), "the settings can be loaded");
    Demand(std::abs(held.LatitudeFinal) <= 90.0 && std::abs(held.LongitudeFinal) <= 180.0 &&
               held.ZoneHours >= -12 && held.ZoneHours <= 14,
           "the place can be computed");
    Demand(held.CurrentKey == world.main->Variables().Settings.CurrentKey, "what is shown is what is stored");
}

void UseList(FuzzWorld& world, FrmLocation& list, Choices& choices)
{
    FuzzWorld::Find<LinkLabel>(list, "LblNewLocLink").Click();
    if (const Form* const search = world.forms.Loaded(FrmNewLoc::kName); search != nullptr) {
        Demand(search->IsLoaded() && world.main->Variables().ActiveForm == search->Name(),
               "the search has the attention");
        UseSearch(world, *search, choices);
    }
    CheckList(world, list);
    CheckRequests(world.platform.http);
    SetCurrent(world, list, choices);
    Demand(world.main->isEnabled() && world.main->Variables().ActiveForm == world.main->Name(),
           "the main window has the attention again");
}

} // namespace

// Replies to the search for countries, by zip code, for the number of cities, for cities, and for one place;
// empty: no reply. Then the choices of the user.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    InputParts parts(data, size);
    FuzzWorld world;
    world.forms.Register(FrmLocation::kName, [&world] { return std::make_unique<FrmLocation>(world.forms); });
    world.forms.Register(FrmNewLoc::kName, [&world] { return std::make_unique<FrmNewLoc>(world.forms); });
    PlainWindow::Register(world.forms, kWait);
    for (const char* const script : {"getStates.pl", "getUsCanCity.pl", "getNumMatchingCities.pl",
                                     "getMatchingCities.pl", "getCityInfo.pl"}) {
        if (const QByteArray reply = QByteArray::fromStdString(parts.Next()); !reply.isEmpty()) {
            world.platform.http.replies[QLatin1String(script)] = reply;
        }
    }
    Choices choices(parts.Next());
    world.platform.boxes.answers = {choices.Among(2) == 1};
    world.main->Enable(false);
    auto& list = world.forms.Touch<FrmLocation>();
    list.Show();
    world.main->Variables().ActiveForm = list.Name();
    UseList(world, list, choices);
    world.DemandAlive();
    return 0;
}
