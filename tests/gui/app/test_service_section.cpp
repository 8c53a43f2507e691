#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/settings/service_section.h"
#include "core/ui/settings_form.h"
#include "support/app_stage.h"
#include "support/controls.h"

using namespace Qt::StringLiterals;

namespace {

/// The sections on a page of their own.
struct Stage : AppStage {
  Stage() {
    addServiceSections(page, context);
    page.resize(720, 1000);
    page.show();
    settle();
  }
  static void settle() {
    for (int turn = 0; turn < 6; ++turn) QCoreApplication::processEvents();
  }
  /// Chooses as the user would.
  void choose(const QString& box, const QString& entry) {
    auto* control = named<QComboBox>(page, box);
    QVERIFY(control && control->findText(entry) >= 0);
    control->setCurrentIndex(control->findText(entry));
    Q_EMIT control->activated(control->currentIndex());
    settle();
  }
  void type(const QString& field, const QString& text) {
    auto* control = named<QLineEdit>(page, field);
    QVERIFY2(control, qPrintable(field));
    control->selectAll();
    QTest::keyClicks(control, text);
    QTest::keyClick(control, Qt::Key_Return);
    settle();
  }
  void press(const QString& button) {
    auto* control = named<QPushButton>(page, button);
    QVERIFY2(control, qPrintable(button));
    control->click();
    settle();
  }
  bool shows(const QString& text) { return isShown(page, text); }

  SettingsPage page;
};

}  // namespace

class TestServiceSection : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void builtInIsThereWithoutAnythingToEnter() {
    Stage stage;
    QCOMPARE(unnamedControls(stage.page), QStringList());
    QVERIFY(!named<QLineEdit>(stage.page, u"API URL"_s));
    QCOMPARE(stage.vault.reads, 0);
    stage.press(u"Service: Test"_s);
    QVERIFY(named<QPushButton>(stage.page, u"Service: Cancel"_s));
    QVERIFY(stage.http.answer(200, "{\"plan\": \"embedded\"}"));
    QVERIFY(stage.shows(u"✓ The built-in service answers."_s));
    stage.builtIn.place = std::unexpected(ServiceError{ServiceError::Reason::other, u"It did not start."_s});
    stage.press(u"Service: Test"_s);
    QVERIFY(stage.shows(u"It did not start."_s));
  }

  void ownHostsAreSavedWhenTheyAreRight() {
    Stage stage;
    stage.choose(u"Service in use"_s, u"Own hosts"_s);
    QCOMPARE(unnamedControls(stage.page), QStringList());
    stage.type(u"API URL"_s, u"http://far.example"_s);
    QVERIFY(stage.shows(u"It has to begin with https://"_s));
    QVERIFY(stage.services.configuration.value().api.isEmpty());
    stage.type(u"API URL"_s, u" https://api.example/ "_s);
    QVERIFY(!stage.shows(u"It has to begin with https://"_s));
    stage.type(u"Links URL"_s, u"https://links.example"_s);
    stage.type(u"Token"_s, u"t"_s);
    const ServiceSettings saved{u"https://api.example/"_s, u"https://links.example"_s, u"t"_s, true};
    QCOMPARE(ServiceConfiguration(stage.world.folders.file(u"services.json"_s), {}).value(), saved);

    stage.choose(u"Service in use"_s, u"Built-in"_s);
    QVERIFY(stage.services.configuration.mode() == ServiceMode::builtIn);
    QVERIFY(!named<QLineEdit>(stage.page, u"API URL"_s));
    stage.choose(u"Service in use"_s, u"Own hosts"_s);
    QCOMPARE(stage.services.configuration.value(), saved);
  }

  void escapePutsBackWhatIsSaved() {
    Stage stage;
    stage.choose(u"Service in use"_s, u"Own hosts"_s);
    stage.type(u"API URL"_s, u"https://api.example"_s);
    auto* field = named<QLineEdit>(stage.page, u"API URL"_s);
    QTest::keyClicks(field, u"/more"_s);
    QTest::keyClick(field, Qt::Key_Escape);
    QCOMPARE(field->text(), u"https://api.example"_s);
    QVERIFY(stage.page.isVisible());
  }

  void theTestOfOwnHostsSaysWhatItFound() {
    Stage stage;
    stage.vault.secrets[u"api"_s] = "secret";
    stage.choose(u"Service in use"_s, u"Own hosts"_s);
    stage.type(u"API URL"_s, u"https://api.example"_s);
    stage.press(u"Service: Test"_s);
    QVERIFY(stage.http.answer(200, "{\"plan\": \"paid\"}"));
    QVERIFY(stage.shows(u"✓ The service answers. Your plan: paid."_s));
    stage.press(u"Service: Test"_s);
    QVERIFY(stage.http.answer(500, "oops"));
    QVERIFY(stage.shows(u"Request failed (HTTP 500) oops"_s));
    stage.press(u"Service: Test"_s);
    stage.press(u"Service: Cancel"_s);
    QVERIFY(stage.shows(u"Cancelled."_s));
    QVERIFY(stage.http.answer(200, "{\"plan\": \"late\"}"));
    QVERIFY(stage.shows(u"Cancelled."_s) && stage.services.quota.plan() == u"paid"_s);
    stage.type(u"API URL"_s, u"https://other.example"_s);
    QVERIFY(stage.shows(u"Not tested yet."_s));
  }

  void aCredentialIsOnlyKnownToBeThere() {
    Stage stage;
    stage.choose(u"Service in use"_s, u"Own hosts"_s);
    stage.vault.error = CredentialError{CredentialError::Reason::noKeychain, {}};
    stage.type(u"Your credential"_s, u"s3cret"_s);
    QVERIFY(stage.shows(stage.vault.error->description()));
    stage.vault.error.reset();
    stage.press(u"Your credential: Save"_s);
    QCOMPARE(stage.vault.secrets.at(u"api"_s), "s3cret");
    QVERIFY(stage.shows(u"In the keychain"_s) && !stage.shows(u"There is no keychain"_s));
    QVERIFY(!named<QLineEdit>(stage.page, u"Your credential"_s));
    stage.press(u"Your credential: Replace"_s);
    auto* field = named<QLineEdit>(stage.page, u"Your credential"_s);
    QVERIFY(field && field->text().isEmpty());
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(stage.page.isVisible());
    stage.press(u"Your credential: Remove"_s);
    QVERIFY(stage.vault.secrets.empty() && named<QLineEdit>(stage.page, u"Your credential"_s));
  }

  void theProviderShowsTheFieldsOfItsKind() {
    Stage stage;
    QVERIFY(!named<QLineEdit>(stage.page, u"Model"_s));
    stage.choose(u"Provider"_s, u"Command"_s);
    stage.type(u"Command"_s, u"no-such-agent -p"_s);
    stage.press(u"AI provider: Test"_s);
    QVERIFY(stage.shows(u"There is no program “no-such-agent” in PATH."_s));
    stage.choose(u"Provider"_s, u"OpenAI-compatible"_s);
    QCOMPARE(unnamedControls(stage.page), QStringList());
    stage.type(u"Base URL"_s, u"http://localhost:9/v1"_s);
    stage.type(u"Model"_s, u"small"_s);
    stage.press(u"AI provider: Test"_s);
    QVERIFY(stage.http.answer(200, "{\"data\": [{\"id\": \"small\"}]}"));
    QVERIFY(stage.shows(u"✓ The provider answers"_s));
    stage.choose(u"Service in use"_s, u"Own hosts"_s);
    stage.type(u"API URL"_s, u"https://api.example"_s);
    QVERIFY(!named<QComboBox>(stage.page, u"Provider"_s));
  }
};

QTEST_MAIN(TestServiceSection)
#include "test_service_section.moc"
