#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

#include "platform/x11/clipboard_reader.h"
#include "platform/x11/x11_input_watch.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_session.h"
#include "support/qt_clipboard.h"
#include "support/x_client.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray noise(qsizetype size) {
  QByteArray bytes(size, '\0');
  std::uint32_t state = 1;
  for (char& byte : bytes) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
  return bytes;
}

/// Text, a page, a picture that does not fit into one piece, files, numbers, and nothing at all.
PasteboardContents allKinds() {
  return {{{u"text/html"_s, "<b>bold</b>"},
           {u"UTF8_STRING"_s, "b\xc3\xb6ld"},
           {u"TEXT"_s, "b\xc3\xb6ld", 0, u"UTF8_STRING"_s},
           {u"STRING"_s, "b\xf6ld"},
           {u"image/png"_s, noise(3'000'001)},
           {u"text/uri-list"_s, "file:///tmp/a%20b\r\nfile:///tmp/c\r\n"},
           {u"LENGTH"_s, QByteArray("\x01\x00\x00\x80", 4), 0, u"INTEGER"_s, 32},
           {u"application/x-large-words"_s, noise(400'000), 0, u"CARDINAL"_s, 16},
           {u"x-special/marker"_s, {}}}};
}

PasteboardContents held() { return ClipboardReader({}, {}).everything(); }

template <class Value, class Ask>
Value answerOf(Ask ask) {
  std::optional<Value> value;
  const Job job = Job::start();
  ask(job, [&value](Value answer) { value = std::move(answer); });
  [&value] { QTRY_VERIFY(value); }();
  return value.value_or(Value());
}

std::optional<QString> textOf(X11Pasteboard& pasteboard) {
  return answerOf<std::optional<QString>>(
      [&](const Job& job, auto done) { pasteboard.readText(job, std::move(done)); });
}

}  // namespace

class X11ClipboardOwnerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void itIsKnownWhoCopiedAndWhen() {
    const X11Session session = currentX11Session();
    X11Pasteboard pasteboard;
    std::int64_t count = pasteboard.changeCount();
    XClient client;
    client.openWindow(0, 0, 50, 50);
    const auto program = static_cast<KeyTarget>(client.window());
    client.own("CLIPBOARD");
    QCOMPARE(pasteboard.changeCount(), ++count);
    QVERIFY(pasteboard.isChangeBy(program, count, {}));
    QVERIFY(!pasteboard.isChangeBy(static_cast<KeyTarget>(session.root), count, {}));
    QVERIFY(!pasteboard.isChangeBy(program, count + 1, {}));

    const auto watch = X11InputWatch::open();
    QVERIFY(watch && !watch->firstTouch());
    client.waitForNextTick();
    // Whoever has the keyboard.
    QVERIFY(client.takeWholeKeyboard());
    client.tap(client.keyCode('a'));
    client.giveWholeKeyboard();
    const auto touch = watch->firstTouch();
    QVERIFY(touch);
    client.own("CLIPBOARD");
    client.click(400, 400);
    QCOMPARE(watch->firstTouch(), touch);
    QCOMPARE(pasteboard.changeCount(), ++count);
    // Copied before, and perhaps because of it.
    QVERIFY(pasteboard.isChangeBy(program, count - 1, touch));
    QVERIFY(!pasteboard.isChangeBy(program, count, touch));
    for (int time = 0; time < 10; ++time) client.own("CLIPBOARD");
    QCOMPARE(pasteboard.changeCount(), count + 10);
    QVERIFY(!pasteboard.isChangeBy(program, count, {}));
  }

  void aButtonIsATouchToo() {
    const auto watch = X11InputWatch::open();
    XClient client;
    client.moveTo(300, 300);
    QVERIFY(!watch->firstTouch());
    client.click(400, 400);
    QVERIFY(watch->firstTouch());
  }

  void everyKindComesBackByteForByte() {
    X11Pasteboard pasteboard;
    pasteboard.restore(allKinds());
    QVERIFY(held() == allKinds());
    // Another program takes its place, and what is then kept and put back is the same again.
    const auto kept =
        answerOf<PasteboardContents>([&](const Job& job, auto done) { pasteboard.keep(job, std::move(done)); });
    QVERIFY(kept == allKinds());
    copyInQt([](QClipboard& clipboard) { clipboard.setText(u"copied"_s); });
    QCOMPARE(textOf(pasteboard), u"copied"_s);
    pasteboard.restore(kept);
    QVERIFY(held() == allKinds());
  }

  void whatOthersOfferIsKeptInTheirOrder() {
    X11Pasteboard pasteboard;
    copyInQt([](QClipboard& clipboard) {
      auto* copied = new QMimeData;
      copied->setData(u"application/x-own"_s, noise(300'000));
      copied->setHtml(u"<i>slanted</i>"_s);
      copied->setText(u"slanted"_s);
      clipboard.setMimeData(copied);
    });
    QCOMPARE(textOf(pasteboard), u"slanted"_s);
    const auto keep = [&](const Job& job, auto done) { pasteboard.keep(job, std::move(done)); };
    const auto before = answerOf<PasteboardContents>(keep);
    QVERIFY(before.flavours.size() >= 3);
    pasteboard.writeText(u"in between"_s);
    pasteboard.restore(before);
    QVERIFY(answerOf<PasteboardContents>(keep) == before);
    // Qt's own reading of it, which has this thread wait for ours.
    QCOMPARE(QGuiApplication::clipboard()->mimeData()->data(u"application/x-own"_s), noise(300'000));
    QCOMPARE(QGuiApplication::clipboard()->text(), u"slanted"_s);
  }

  void severalKindsAtOnceAreHandedOver() {
    X11Pasteboard pasteboard;
    pasteboard.restore(allKinds());
    XClient other;
    other.openWindow(0, 0, 50, 50);
    const auto atom = [&other](const char* name) {
      const auto cookie = xcb_intern_atom(other.connection(), 0, static_cast<std::uint16_t>(strlen(name)), name);
      const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(other.connection(), cookie, nullptr));
      return reply->atom;
    };
    const xcb_atom_t asked[] = {atom("text/html"), atom("A"), atom("no/such"), atom("B")};
    const xcb_atom_t list = atom("LIST");
    const auto property = [&](xcb_atom_t name) {
      const auto cookie = xcb_get_property(other.connection(), 0, other.window(), name, XCB_ATOM_ANY, 0, 100);
      const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(other.connection(), cookie, nullptr));
      return QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                        xcb_get_property_value_length(reply.get()));
    };
    xcb_change_property(other.connection(), XCB_PROP_MODE_REPLACE, other.window(), list, atom("ATOM_PAIR"), 32, 4,
                        asked);
    xcb_convert_selection(other.connection(), other.window(), atom("CLIPBOARD"), atom("MULTIPLE"), list,
                          XCB_CURRENT_TIME);
    QTRY_COMPARE(property(asked[1]), "<b>bold</b>");
    QTRY_COMPARE(property(list), QByteArray(reinterpret_cast<const char*>(asked), 12) + QByteArray(4, '\0'));
  }

  void changesAreCountedThatChangeNothing() {
    X11Pasteboard pasteboard;
    const auto start = pasteboard.changeCount();
    QCOMPARE(pasteboard.changeCount(), start);
    XClient other;
    other.openWindow(0, 0, 50, 50);
    other.own("CLIPBOARD");
    other.own("PRIMARY");
    QCOMPARE(pasteboard.changeCount(), start + 1);
    pasteboard.writeText(u"same"_s);
    pasteboard.writeText(u"same"_s);
    QCOMPARE(pasteboard.changeCount(), start + 3);
    held();
    QCOMPARE(pasteboard.changeCount(), start + 3);
  }

  void textAndImagesAreWritten() {
    X11Pasteboard pasteboard;
    pasteboard.writeText(u"grün 🚀"_s);
    QCOMPARE(textOf(pasteboard), u"grün 🚀"_s);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"grün 🚀"_s);
    const QByteArray png = noise(500'000);
    pasteboard.writeImage(png);
    QCOMPARE(ClipboardReader({}, {}).first({PasteboardFormat::png})->bytes, png);
    QVERIFY(!textOf(pasteboard));
    // Qt and we take it from each other.
    copyInQt([](QClipboard& clipboard) { clipboard.setText(u"Qt's"_s); });
    QCOMPARE(textOf(pasteboard), u"Qt's"_s);
    pasteboard.restore({});
    QVERIFY(!textOf(pasteboard));
    QVERIFY(held().flavours.empty());
  }
};

QTEST_MAIN(X11ClipboardOwnerTest)
#include "x11_clipboard_owner_test.moc"
