#include "platform/linux/input/helper/backend.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <utility>
#include <variant>

#include "platform/linux/input/helper/permission.h"
#include "platform/linux/input/key_codes.h"

namespace vorrin::helper {

using namespace helper_protocol;

namespace {

constexpr std::chrono::seconds retryTime{1};
constexpr int mostFailedStarts = 3;

void log(const char* line) {
  std::fprintf(stderr, "vorrin: %s\n", line);
}

std::optional<PostedKey> postedKey(const SyntheticEvent& event) {
  switch (event.type) {
    case EventType::leftMouseDown:
    case EventType::leftMouseUp:
      return PostedKey{0, event.type == EventType::leftMouseDown};
    case EventType::keyDown:
    case EventType::keyUp: {
      const auto key = evdevCode(event.keyCode);
      if (!key || !isDigitKey(*key)) return std::nullopt;
      return PostedKey{*key, event.type == EventType::keyDown};
    }
    default:
      return std::nullopt;
  }
}

const char* describe(EndReason reason) {
  switch (reason) {
    case EndReason::panicChord:
      return "the input helper was ended by Escape, Backspace and Enter; choose “Retry connection” "
             "to start it again";
    case EndReason::revoked:
      return "the permission to use the keyboards was taken back";
    case EndReason::noUinput:
      return "the system makes no input devices: /dev/uinput is missing or closed";
  }
  return "the input helper has ended";
}

}  // namespace

Backend::Backend(HelperStart start) : start_(std::move(start)) {
  QObject::connect(&retry_, &QTimer::timeout, &context_, [this] { startSilently(); });
  auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
  if (application == nullptr) return;
  QObject::connect(application, &QGuiApplication::applicationStateChanged, &context_,
                   [this](Qt::ApplicationState state) {
                     if (state == Qt::ApplicationActive) tellUnlocked();
                   });
}

Backend::~Backend() {
  // The tap may live longer; it is not to be told of an end that the program itself brings about.
  if (const auto tap = tap_.lock()) tap->end();
}

bool Backend::isTrustedWithPrompt() {
  waitForUser_ = false;
  failedStarts_ = 0;
  retry_.start(retryTime);
  if (!connection_) start(start_.devicesAreOpen() ? StartWay::directly : StartWay::asking);
  return available_.has_value();
}

void Backend::giveUpPermission() {
  waitForUser_ = true;
  if (connection_) lose(false);
}

void Backend::changePermission(const std::string& term) {
  const auto program = permissionProgram();
  if (!program) return;
  permissionChange_ = StartedProcess::changePermission(*program, term, [this, term](int status) {
    if (status == 0 && term == "allow") isTrustedWithPrompt();
  });
}

void Backend::startSilently() {
  if (connection_ || waitForUser_ || asking_) return;
  if (start_.devicesAreOpen()) {
    start(StartWay::directly);
    return;
  }
  asking_ = true;
  start_.askPermission(context_, [this](bool allowed) {
    asking_ = false;
    if (allowed && !connection_ && !waitForUser_) start(StartWay::silently);
  });
}

void Backend::start(StartWay way) {
  auto ends = makeSocketPair();
  // What is said before the helper runs has to name its sender too.
  if (!ends || !nameSenders(ends->first.number())) return;
  way_ = way;
  greeted_ = false;
  process_ = start_.start(way, ends->second, [this](int status) { followProcessEnd(status); });
  if (!process_) {
    log("the input helper cannot be started");
    countFailedStart();
    return;
  }
  connection_ = std::make_unique<Connection>(
      std::move(ends->first),
      Connection::Handlers{[this](const FromHelper& message) { receive(message); },
                           [this](bool broken) { lose(broken); }});
  // What it is too early to be read waits in the socket.
  if (!connection_->send(Hello{})) lose(false);
}

void Backend::receive(const FromHelper& message) {
  const auto* const hello = std::get_if<Hello>(&message);
  // The hello comes first, and once.
  if ((hello != nullptr) == greeted_) return lose(true);
  if (hello != nullptr) return greet(*hello);
  if (const auto* availability = std::get_if<Availability>(&message)) {
    return setAvailable(availability->available);
  }
  if (const auto* ending = std::get_if<Ending>(&message)) return followEnd(*ending);
  if (const auto* question = std::get_if<Question>(&message)) return answer(*question);
  const auto tap = tap_.lock();
  if (!tap) return;
  if (const auto* moved = std::get_if<KeyMoved>(&message)) {
    tap->tell(*moved);
  } else if (const auto* disabled = std::get_if<Disabled>(&message)) {
    tap->tellDisabled(disabled->reason);
  }
}

void Backend::greet(const Hello& hello) {
  greeted_ = true;
  if (hello.version == helper_protocol::version) return;
  log("the input helper installed here is of another version");
  waitForUser_ = true;
  lose(false);
}

void Backend::setAvailable(bool available) {
  if (!available) log("another program holds a keyboard; Vorrin waits until it lets go");
  available_ = available;
  failedStarts_ = 0;
  if (available) return;
  if (const auto tap = tap_.lock()) tap->invalidate();
}

void Backend::followEnd(const Ending& ending) {
  log(describe(ending.reason));
  // Else the next look, which the loss brings about itself, would bring it back against the user's
  // will.
  waitForUser_ = ending.reason != EndReason::revoked;
  lose(false);
}

void Backend::answer(const Question& question) {
  const auto tap = tap_.lock();
  const bool swallow = tap && tap->decide(question);
  // The callback may have ended the connection.
  if (connection_ && !connection_->send(Verdict{question.number, swallow})) lose(false);
}

void Backend::tellUnlocked() {
  if (available_ && !connection_->send(Unlocked{})) lose(false);
}

void Backend::lose(bool broken) {
  if (broken) log("the input helper said something that has no meaning; the connection is closed");
  if (!available_) countFailedStart();
  if (broken) waitForUser_ = true;
  available_.reset();
  connection_.reset();
  if (const auto tap = tap_.lock()) tap->invalidate();
}

void Backend::countFailedStart() {
  // What ends every helper before it serves would end the next one too, unless it is the user's no.
  if (way_ != StartWay::asking) ++failedStarts_;
  if (failedStarts_ >= mostFailedStarts) waitForUser_ = true;
}

void Backend::followProcessEnd(int status) {
  // What pkexec says when the user or the rules say no.
  constexpr int dismissed = 126;
  constexpr int notAuthorized = 127;
  if (status == dismissed || status == notAuthorized) log("the permission was not given");
}

std::shared_ptr<Tap> Backend::createTap(std::uint64_t mask, EventTap::Callback callback,
                                        std::function<void()> invalidated) {
  if (!available_.value_or(false)) return nullptr;
  const auto tap =
      std::make_shared<Tap>(mask, callback, std::move(invalidated),
                            [this](const Configure& configuration) { configure(configuration); });
  tap_ = tap;
  return tap;
}

void Backend::configure(const Configure& configuration) {
  if (!connection_ || connection_->send(configuration)) return;
  // Not within the call of the tap that has something new. Whichever helper there is by then, this
  // one has been left.
  QMetaObject::invokeMethod(
      &context_,
      [this, left = connection_.get()] {
        if (connection_.get() == left) lose(false);
      },
      Qt::QueuedConnection);
}

std::optional<PointerLocation> Backend::pointerLocation() {
  return PointerLocation{};
}

void Backend::post(std::span<const SyntheticEvent> events) {
  if (!connection_ || !available_) return;
  while (!events.empty()) {
    Post post;
    const auto batch = events.first(std::min(events.size(), maximumPosts));
    for (const auto& event : batch) {
      if (const auto key = postedKey(event)) post.keys[post.count++] = *key;
    }
    events = events.subspan(batch.size());
    [[maybe_unused]] const bool taken = connection_->send(post);
  }
}

}  // namespace vorrin::helper
