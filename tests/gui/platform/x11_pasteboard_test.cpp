#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QTest>

#include <poll.h>

#include <atomic>
#include <thread>

#include "platform/x11/clipboard_reader.h"
#include "platform/x11/x11_pasteboard.h"
#include "support/qt_clipboard.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum class Manners { honest, inPieces, endless, silent, refusing, dying, gibberish };

/// Another program that owns the clipboard and offers `bytes` as a PNG, on a thread of its own.
class Owner {
 public:
  Owner(Manners manners, QByteArray bytes) : manners_(manners), bytes_(std::move(bytes)) {
    connection_ = xcb_connect(nullptr, nullptr);
    window_ = xcb_generate_id(connection_);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection_, window_, atom("CLIPBOARD"), XCB_CURRENT_TIME);
    // A round trip: whoever reads from now on finds this owner.
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    thread_ = std::jthread([this](const std::stop_token& stop) { serve(stop); });
  }
  ~Owner() {
    thread_ = {};
    if (connection_) xcb_disconnect(connection_);
  }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

  int requests() const { return requests_; }

 private:
  xcb_atom_t atom(QByteArrayView name) {
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply->atom;
  }

  void serve(const std::stop_token& stop) {
    while (!stop.stop_requested() && connection_) {
      pollfd waiting{xcb_get_file_descriptor(connection_), POLLIN, 0};
      poll(&waiting, 1, 10);
      while (connection_) {
        const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)};
        if (!event) break;
        handle(*event);
      }
    }
  }

  void handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    if (type == XCB_SELECTION_REQUEST) answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    if (type == XCB_PROPERTY_NOTIFY) goOn(reinterpret_cast<const xcb_property_notify_event_t&>(event));
  }

  void answer(const xcb_selection_request_event_t& request) {
    ++requests_;
    if (manners_ == Manners::silent) return;
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = offer(request) ? request.property : xcb_atom_t{XCB_NONE};
    xcb_send_event(connection_, 0, request.requestor, 0, sentBytes(notice).data());
    xcb_flush(connection_);
  }

  bool offer(const xcb_selection_request_event_t& request) {
    if (request.target == atom("TARGETS")) {
      const std::vector<xcb_atom_t> targets{atom("image/png"), atom("image/tiff")};
      write(request, XCB_ATOM_ATOM, 32, QByteArray(reinterpret_cast<const char*>(targets.data()), 8));
      return true;
    }
    if (request.target != atom("image/png") || manners_ == Manners::refusing) return false;
    if (manners_ == Manners::honest) {
      write(request, request.target, 8, bytes_);
      return true;
    }
    if (manners_ == Manners::gibberish) {
      write(request, XCB_ATOM_CARDINAL, 32, "12345678");
      return true;
    }
    requestor_ = request;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, request.requestor, XCB_CW_EVENT_MASK, &events);
    write(request, atom("INCR"), 32, QByteArray(4, '\0'));
    return true;
  }

  void write(const xcb_selection_request_event_t& request, xcb_atom_t type, std::uint8_t format,
             const QByteArray& bytes) {
    const auto count = static_cast<std::uint32_t>(bytes.size() / (format / 8));
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, request.property, type, format, count,
                        bytes.constData());
  }

  /// The next piece, once the one before has been taken.
  void goOn(const xcb_property_notify_event_t& change) {
    if (change.state != XCB_PROPERTY_DELETE || change.atom != requestor_.property) return;
    constexpr qsizetype kPiece = 60'000;
    if (manners_ == Manners::dying && sent_ > 0) {
      xcb_disconnect(std::exchange(connection_, nullptr));
      return;
    }
    const QByteArray piece = manners_ == Manners::endless ? QByteArray(kPiece, 'x') : bytes_.mid(sent_, kPiece);
    sent_ += piece.size();
    write(requestor_, requestor_.target, 8, piece);
    xcb_flush(connection_);
  }

  Manners manners_;
  QByteArray bytes_;
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_selection_request_event_t requestor_{};
  qsizetype sent_ = 0;
  std::atomic<int> requests_ = 0;
  std::jthread thread_;
};

const std::vector kImages{PasteboardFormat::png, PasteboardFormat::tiff};
constexpr ClipboardReader::Limits kShort{.offers = 200ms, .silence = 200ms, .whole = 2000ms, .bytes = 1'000'000};

QByteArray readPNG(ClipboardReader::Limits limits = {}) {
  const auto data = ClipboardReader(limits, {}).first(kImages);
  return data && data->format == PasteboardFormat::png ? data->bytes : QByteArray();
}

}  // namespace

class X11PasteboardTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void whatAnotherProgramOffersIsRead() {
    QVERIFY(readPNG().isNull());
    const QByteArray small("\x89PNG with \0 in it", 18);
    {
      const Owner owner(Manners::honest, small);
      QCOMPARE(readPNG(), small);
      QVERIFY(!ClipboardReader({}, {}).first({PasteboardFormat::jpeg, PasteboardFormat::fileURLs}));
    }
    QByteArray large(5'000'000, 'a');
    large[4'999'999] = 'z';
    const Owner owner(Manners::inPieces, large);
    QVERIFY(readPNG() == large);
  }

  void aBadOwnerIsGivenUp_data() {
    QTest::addColumn<int>("manners");
    QTest::addColumn<int>("mostRequests");
    QTest::addRow("silent") << int(Manners::silent) << 1;
    QTest::addRow("refusing") << int(Manners::refusing) << 3;
    QTest::addRow("gone in the middle") << int(Manners::dying) << 2;
    QTest::addRow("endless") << int(Manners::endless) << 3;
  }
  void aBadOwnerIsGivenUp() {
    QFETCH(const int, manners);
    QFETCH(const int, mostRequests);
    const Owner owner(static_cast<Manners>(manners), QByteArray(500'000, 'x'));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(readPNG(kShort).isNull());
    // Thirty seconds without these limits.
    QVERIFY2(timer.elapsed() < 15'000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(owner.requests() <= mostRequests, qPrintable(QString::number(owner.requests())));
  }

  void bytesOfAnyTypeAreOnlyBytes() {
    const Owner owner(Manners::gibberish, {});
    QCOMPARE(readPNG(), "12345678");
  }

  void anOwnerThatIsGoneIsNotWaitedFor() {
    const Owner owner(Manners::dying, QByteArray(500'000, 'x'));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(readPNG().isNull());
    QVERIFY2(timer.elapsed() < 8000, qPrintable(QString::number(timer.elapsed())));
  }

  void aSilentOwnerHoldsNobodyUp() {
    const Owner owner(Manners::silent, {});
    auto pasteboard = std::make_unique<X11Pasteboard>();
    bool isAnswered = false;
    Job job = Job::start();
    QElapsedTimer timer;
    timer.start();
    pasteboard->read(kImages, job, [&isAnswered](const auto&) { isAnswered = true; });
    QTRY_COMPARE(owner.requests(), 1);
    job.cancel();
    // Its end waits for the reader's, which comes before it gives the owner up.
    pasteboard.reset();
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(!isAnswered);
  }

  void ourOwnClipboardIsReadToo() {
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    copyInQt([&image](QClipboard& clipboard) { clipboard.setImage(image); });
    X11Pasteboard pasteboard;
    std::optional<PasteboardData> data;
    const Job job = Job::start();
    pasteboard.read(kImages, job, [&data](const auto& read) { data = read; });
    QTRY_VERIFY(data);
    QCOMPARE(QImage::fromData(data->bytes, "png").pixelColor(3, 3), QColor(Qt::red));
    pasteboard.writeText(u"a link"_s);
    bool isAnswered = false;
    pasteboard.read(kImages, job, [&](const auto& read) {
      data = read;
      isAnswered = true;
    });
    QTRY_VERIFY(isAnswered);
    QVERIFY(!data);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"a link"_s);
  }
};

QTEST_MAIN(X11PasteboardTest)
#include "x11_pasteboard_test.moc"
