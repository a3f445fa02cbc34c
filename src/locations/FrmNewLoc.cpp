// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "locations/FrmNewLoc.h"

#include "forms/Areas.h"
#include "forms/Forms.h"
#include "locations/FrmLocation.h"
#include "locations/Places.h"
#include "platform/Desktop.h"
#include "platform/Platform.h"
#include "service/InternetClass.h"
#include "service/ServiceAddresses.h"
#include "service/ServiceRequests.h"
#include "ui_FrmNewLoc.h"

#include <QRegularExpression>

namespace {

// Counts do not depend on the user's locale, and a text without a number counts as 0: no reply of a service
// may end the program.
double WholeNumberPart(const QString& text)
{
    static const QRegularExpression leadingDigits(QStringLiteral("^\\s*([+-]?[0-9]+)"));
    return leadingDigits.match(text).captured(1).toDouble();
}

// Whether the reply has more than @p mostChildren elements below its root, more markup than that many
// elements with a text each, or nested roots. The lookup of a child by its name walks through the whole
// reply, and again through each nested root.
bool IsLarger(const DomDocument& reply, int mostChildren)
{
    const DomNode root = reply.DocumentElement();
    return root.ChildCount() > mostChildren || root.Xml().count(u'<') > 2LL * (mostChildren + 1) ||
           reply.SelectSingleNode(QStringLiteral("//root//root//root"));
}

// Reads two attributes of each child of the element at `path` into two lists.
std::pair<QStringList, QStringList> ReadPairs(const SimpleXML& parent, const QString& path,
                                              const QString& shown, const QString& key)
{
    std::pair<QStringList, QStringList> pairs;
    WalkChildren(parent, path, [&](const SimpleXML& child) {
        pairs.first << child.GetAttribute(shown, kCurrentPath);
        pairs.second << child.GetAttribute(key, kCurrentPath);
        return true;
    });
    return pairs;
}

} // namespace

FrmNewLoc::FrmNewLoc(Forms& forms)
    : Form(forms, kName, Qt::Window)
    , m_ui(std::make_unique<Ui::FrmNewLoc>())
    , Timer1(GetPlatform().timers.CreateTimer())
{
    m_ui->setupUi(this);
    HideProgress();
    ConnectControls();
    CentreOver(forms.Loaded(FrmLocation::kName));
}

FrmNewLoc::~FrmNewLoc() = default;

void FrmNewLoc::ConnectControls()
{
    const auto setHand = [this] { SetHandPointer(); };
    const auto setDefault = [this] { SetDefaultPointer(); };
    m_ui->LblGetLink->OnClick([this] { Handle([this] { LookUpZipCode(); }); });
    m_ui->LblGetLink->OnMouseMove(setHand);
    m_ui->LblGet2Link->OnClick([this] { Handle([this] { LookUpCity(); }); });
    m_ui->LblGet2Link->OnMouseMove(setHand);
    new HoverArea(m_ui->FrmSearch, setDefault);
    new HoverArea(m_ui->Frame1, setDefault);
    // Click does nothing on a disabled link or button, whose handler is still running.
    m_ui->TxtZipCode->OnEnter([this] { m_ui->LblGetLink->Click(); });
    m_ui->TxtCity->OnEnter([this] { m_ui->LblGet2Link->Click(); });
    m_ui->LstSearchResults->OnDoubleClick([this] { m_ui->CmdAdd->click(); });
    connect(m_ui->CmdAdd, &QPushButton::clicked, this, [this] { Handle([this] { AddLocation(); }); });
    connect(m_ui->CmdCancel, &QPushButton::clicked, this, [this] { Handle([this] { Unload(); }); });
    Timer1->SetHandler([this] { Handle([this] { Tick(); }); });
}

void FrmNewLoc::OnLoad()
{
    Refresh();
    if (!InternetClass(GetPlatform(), ServiceAddresses::Probe(Variables().Settings)).VerifyConnectivity()) {
        FailAndUnload(QStringLiteral(
            "You must be connected to the Internet to add locations.  Please check your connection."));
        return;
    }
    const std::unique_ptr<SimpleXML> states = Request(ServiceRequests::GetStates(Variables().Settings));
    if (!IsLoaded()) {
        return;
    }
    if (!states || !states->hasChildren(kRootPath)) {
        FailAndUnload(QStringLiteral("Unable to retrieve state list.\r\nVerify internet connection."));
        return;
    }
    const auto [names, keys] =
        ReadPairs(*states, kRootPath, QStringLiteral("state"), QStringLiteral("state_id"));
    CombStateID = keys;
    m_ui->CombState->addItems(names);
    m_ui->CombState->setCurrentIndex(-1);
}

void FrmNewLoc::OnUnload()
{
    Timer1->SetEnabled(false);
    Form* const location = Siblings().Loaded(FrmLocation::kName);
    if (location == nullptr) {
        // Touch would load the list again.
        Siblings().ReturnToMain();
        return;
    }
    location->Enable(true);
    Variables().ActiveForm = location->Name();
    if (location->isVisible()) {
        location->SetFocus();
    }
}

void FrmNewLoc::Say(const QString& message) const
{
    GetPlatform().boxes.Show(message);
}

void FrmNewLoc::FailAndUnload(const QString& message)
{
    Say(message);
    Unload();
}

std::unique_ptr<SimpleXML> FrmNewLoc::Request(const QString& url, int mostChildren) const
{
    SimpleXML reply(GetPlatform());
    if (!reply.Load(url)) {
        return nullptr;
    }
    std::unique_ptr<SimpleXML> root = reply.GetElement(QStringLiteral("root"));
    if (!root) {
        root = std::make_unique<SimpleXML>(GetPlatform());
    } else if (IsLarger(*root->xmldoc, mostChildren)) {
        return nullptr;
    }
    root->SetCurrentPath(kRootPath);
    return root;
}

void FrmNewLoc::ShowProgress()
{
    Timer1->SetInterval(1000);
    m_ui->ProgressBar1->show();
    m_ui->LblStatus->setEnabled(true);
    m_ui->ProgressBar1->setValue(0);
    m_ui->LblStatus->setText(QStringLiteral("Retrieving Information"));
    m_ui->LblStatus->show();
    Timer1->SetEnabled(true);
}

void FrmNewLoc::HideProgress()
{
    Timer1->SetEnabled(false);
    m_ui->ProgressBar1->hide();
    m_ui->LblStatus->hide();
}

void FrmNewLoc::Tick()
{
    // The bar shows only that time passes; in a long search it stays at its end.
    QProgressBar& bar = *m_ui->ProgressBar1;
    bar.setValue(qMin(bar.value() + 1, bar.maximum()));
}

void FrmNewLoc::LookUpZipCode()
{
    DisabledControl link(*this, *m_ui->LblGetLink);
    if (m_ui->TxtZipCode->Text().isEmpty()) {
        Say(QStringLiteral("You must enter a zipcode to search for."));
        link.Enable();
        // Intended: the search continues with the empty zip code, and the service decides about it.
    }
    if (IsLoaded()) {
        SearchZipCode();
    }
    link.Enable();
}

void FrmNewLoc::SearchZipCode()
{
    const std::unique_ptr<SimpleXML> cities =
        Request(ServiceRequests::GetUsCanCity(Variables().Settings, m_ui->TxtZipCode->Text()));
    if (!IsLoaded()) {
        return;
    }
    if (!cities) {
        Say(QStringLiteral("Failed to retrieve list"));
        return;
    }
    if (!cities->hasChildren(kRootPath)) {
        Say(QStringLiteral("No city found matching this Zip Code"));
        return;
    }
    FillResults(*cities);
}

void FrmNewLoc::LookUpCity()
{
    DisabledControl link(*this, *m_ui->LblGet2Link);
    ShowProgress();
    SearchCity();
    HideProgress();
    link.Enable();
}

void FrmNewLoc::SearchCity()
{
    const int row = m_ui->CombState->currentIndex();
    if (row < 0) {
        Say(QStringLiteral("You must first select a Country/Region."));
        return;
    }
    if (m_ui->TxtCity->Text().size() < 2) {
        Say(QStringLiteral("You must supply at least the first\r\n 2 characters of the city name."));
        return;
    }
    const QString stateId = CombStateID.at(row);
    const std::unique_ptr<SimpleXML> count =
        Request(ServiceRequests::GetNumMatchingCities(Variables().Settings, stateId, m_ui->TxtCity->Text()));
    // Intended: without a count the list is requested all the same.
    if (!IsLoaded() || (count && !WantsMatches(*count)) || !IsLoaded()) {
        return;
    }
    const std::unique_ptr<SimpleXML> cities =
        Request(ServiceRequests::GetMatchingCities(Variables().Settings, stateId, m_ui->TxtCity->Text()));
    if (IsLoaded() && cities) {
        FillResults(*cities);
    }
}

bool FrmNewLoc::WantsMatches(const SimpleXML& count)
{
    const QString matches = count.GetAttribute(QStringLiteral("num_matches"), kRootPath);
    if (matches.isEmpty() || matches == u"0") {
        Say(QStringLiteral("There are no matches for this search criteria.\r\nPlease try again."));
        return false;
    }
    const QString limit = count.GetAttribute(QStringLiteral("max_matches"), kRootPath);
    if (WholeNumberPart(matches) <= WholeNumberPart(limit)) {
        return true;
    }
    // Intended: the question contains the limit, not the count.
    if (GetPlatform().boxes.Ask(QStringLiteral("There are over ") + limit +
                                QStringLiteral(" matches.\r\nWould you like to display all?"))) {
        return true;
    }
    Say(QStringLiteral("Please refine your search and try again."));
    return false;
}

void FrmNewLoc::FillResults(const SimpleXML& cities)
{
    const auto [names, keys] =
        ReadPairs(cities, kRootPath, QStringLiteral("city"), QStringLiteral("atlas_id"));
    m_ui->LstSearchResults->clear();
    m_ui->LstSearchResults->addItems(names);
    LstSearchResultsHid = keys;
}

void FrmNewLoc::AddLocation()
{
    DisabledControl button(*this, *m_ui->CmdAdd);
    const int row = m_ui->LstSearchResults->ListIndex();
    if (row < 0) {
        Say(QStringLiteral("You must first select a city to add."));
    } else {
        FetchAndStore(LstSearchResultsHid.at(row));
    }
    button.Enable();
}

void FrmNewLoc::FetchAndStore(const QString& atlasId)
{
    // The service sends one place. The limit bounds the work: each place is compared with all stored ones and
    // saved separately.
    constexpr int kMostPlaces = 100;
    const std::unique_ptr<SimpleXML> places =
        Request(ServiceRequests::GetCityInfo(Variables().Settings, atlasId), kMostPlaces);
    if (!IsLoaded()) {
        return;
    }
    if (!places || !AreUsablePlaces(*places)) {
        Say(QStringLiteral("Failed to get city info. Please verify internet connection."));
        return;
    }
    if (!AddPlaces(GetPlatform(), *places)) {
        Say(QStringLiteral("This location has already been added to location list."));
        return;
    }
    if (Form* const location = Siblings().Loaded(FrmLocation::kName); location != nullptr) {
        static_cast<FrmLocation*>(location)->RefreshList();
    }
    Unload();
}
