#include "input_helper/filter.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace vorrin::input_helper {

using namespace helper_protocol;

void Filter::addKeyboard(KeyboardId id, const KeySet& keysDown, Moment now) {
  Keyboard keyboard;
  keyboard.physical = keysDown;
  keyboard.processed = keysDown;
  keyboard.ready = now + startGap;
  keyboard.lastEvent = now;
  keyboards_[id] = keyboard;
}

void Filter::removeKeyboard(KeyboardId id, Moment now) {
  const auto found = keyboards_.find(id);
  if (found == keyboards_.end()) return;
  const bool frontWaits = answerDue_ && queue_.front().keyboard == id;
  // Whoever holds a shortcut key of the lost keyboard must not hold it for ever.
  releaseAsked(found->second);
  if (frontWaits) {
    const auto& front = queue_.front();
    tell(front.events[front.next].code, false);
    answerDue_.reset();
  }
  std::erase_if(queue_, [id](const PendingFrame& frame) { return frame.keyboard == id; });
  keyboards_.erase(found);
  if (!answerDue_) process(now);
}

void Filter::receive(KeyboardId id, Frame frame, Moment made, Moment now) {
  const auto found = keyboards_.find(id);
  if (found == keyboards_.end()) return;
  Keyboard& keyboard = found->second;
  followKeys(frame, keyboard.physical);
  keyboard.lastEvent = made;
  if (holdsPanicChord(keyboard.physical)) {
    actions_.panic();
    return;
  }
  // What was made under a grab may arrive after its end, and nobody else saw it.
  const bool seenByAll =
      made < keyboard.grabbedAt || (!keyboard.grabbed && made >= keyboard.ungrabbedAt);
  if (keyboard.grabbed && seenByAll && keyboard.physical.any()) {
    // Everybody saw this press; a release that only this program sees would leave the key down.
    letGo(id, keyboard);
  }
  enqueue({id, std::move(frame), !seenByAll, false, 0, {}}, now);
}

void Filter::resynchronise(KeyboardId id, const KeySet& keysDown, Moment now) {
  const auto found = keyboards_.find(id);
  if (found == keyboards_.end()) return;
  Keyboard& keyboard = found->second;
  auto frame = difference(keyboard.physical, keysDown);
  keyboard.physical = keysDown;
  keyboard.lastEvent = now;
  enqueue({id, std::move(frame), keyboard.grabbed, true, 0, {}}, now);
}

void Filter::removeAll() {
  enabled_ = false;
  queue_.clear();
  answerDue_.reset();
  verdict_.reset();
  keyboards_.clear();
}

void Filter::enqueue(PendingFrame frame, Moment now) {
  queue_.push_back(std::move(frame));
  if (!answerDue_) process(now);
}

void Filter::process(Moment now) {
  while (!queue_.empty() && processFront(now)) queue_.pop_front();
  if (queue_.empty()) updateGrabs(now);
}

/// False when the frame has to wait for a verdict.
bool Filter::processFront(Moment now) {
  PendingFrame& frame = queue_.front();
  Keyboard& keyboard = keyboards_.at(frame.keyboard);
  for (; frame.next < frame.events.size(); ++frame.next) {
    if (!processEvent(frame, keyboard, frame.events[frame.next], now)) return false;
  }
  if (frame.filtered && !frame.kept.empty()) actions_.emit(frame.keyboard, frame.kept);
  return true;
}

bool Filter::processEvent(PendingFrame& frame, Keyboard& keyboard, const InputEvent& event,
                          Moment now) {
  if (isOutput(event)) return true;
  if (!isKey(event)) {
    keepEvent(frame.events, frame.next, frame.kept);
    return true;
  }
  if (event.value == pressed) return processPress(frame, keyboard, event, now);
  if (event.value == released) {
    processRelease(frame, keyboard, event);
  } else {
    processRepeat(frame, keyboard, event);
  }
  return true;
}

bool Filter::processPress(PendingFrame& frame, Keyboard& keyboard, const InputEvent& event,
                          Moment now) {
  const bool claimable =
      frame.filtered && enabled_ && (swallowable_ & shortcutSet(event.code)) != 0;
  if (claimable && !frame.resynchronised && !verdict_) {
    ask(event.code, now);
    return false;
  }
  const bool swallow = claimable && (frame.resynchronised || *verdict_);
  if (verdict_) keyboard.asked.set(event.code);
  verdict_.reset();
  keyboard.processed.set(event.code);
  if (event.code == escapeKey) tell(event.code, true);
  if (frame.filtered && !swallow) {
    keyboard.passed.set(event.code);
    keepEvent(frame.events, frame.next, frame.kept);
  }
  return true;
}

/// A repeat, too, goes where its press went.
void Filter::processRepeat(PendingFrame& frame, const Keyboard& keyboard, const InputEvent& event) {
  if (keyboard.asked.test(event.code) || event.code == escapeKey) tell(event.code, true, true);
  if (keyboard.passed.test(event.code)) keepEvent(frame.events, frame.next, frame.kept);
}

/// A release goes where its press went, whatever was decided since.
void Filter::processRelease(PendingFrame& frame, Keyboard& keyboard, const InputEvent& event) {
  keyboard.processed.reset(event.code);
  if (keyboard.asked.test(event.code) || event.code == escapeKey) tell(event.code, false);
  keyboard.asked.reset(event.code);
  if (!keyboard.passed.test(event.code)) return;
  keyboard.passed.reset(event.code);
  if (frame.filtered) {
    keepEvent(frame.events, frame.next, frame.kept);
  } else {
    actions_.emit(frame.keyboard, {&event, 1});
  }
}

void Filter::ask(std::uint16_t key, Moment now) {
  answerDue_ = now + answerLimit;
  actions_.send(Question{nextQuestion_++, key, modifiers()});
}

void Filter::tell(std::uint16_t key, bool down, bool repeated) {
  if (enabled_) actions_.send(KeyMoved{key, modifiers(), down, repeated});
}

void Filter::releaseAsked(Keyboard& keyboard) {
  for (const auto key : shortcutKeys) {
    if (keyboard.asked.test(key)) tell(key, false);
  }
  keyboard.asked.reset();
}

bool Filter::answer(const Verdict& verdict, Moment now) {
  if (verdict.question >= nextQuestion_) return false;
  // The answer to an earlier question comes too late to count.
  if (!answerDue_ || verdict.question + 1 != nextQuestion_) return true;
  answerDue_.reset();
  verdict_ = verdict.swallow != 0;
  process(now);
  return true;
}

void Filter::configure(const Configure& configuration, Moment now) {
  const bool wanted = wantsGrab();
  enabled_ = configuration.enabled != 0;
  swallowable_ = configuration.keys;
  if (!wanted) wantedSince_ = now;
  updateGrabs(now);
}

/// No answer came in time: everything that waits passes, and nothing is asked any more.
void Filter::giveUpQuestion(Moment now) {
  answerDue_.reset();
  verdict_ = false;
  enabled_ = false;
  for (auto& [id, keyboard] : keyboards_) keyboard.asked.reset();
  actions_.send(Disabled{nextQuestion_ - 1});
  process(now);
}

void Filter::letGo(KeyboardId id, Keyboard& keyboard) {
  if (!keyboard.grabbed) return;
  if (const auto releases = difference(keyboard.passed, {}); !releases.empty()) {
    actions_.emit(id, releases);
  }
  keyboard.passed.reset();
  keyboard.grabbed = false;
  keyboard.ungrabbedAt = actions_.ungrab(id);
}

bool Filter::wantsGrab() const {
  return enabled_ && available_ && swallowable_ != 0;
}

/// The earliest moment at which an untouched keyboard may be taken: in a pause of the typing, so
/// that no key lands between the keyboard's own way and the clone's.
Moment Filter::grabDue(const Keyboard& keyboard) const {
  const auto pause = std::min(keyboard.lastEvent + quietTime, wantedSince_ + longestWait);
  return std::max({keyboard.ready, wantedSince_, pause});
}

void Filter::updateGrabs(Moment now) {
  if (!queue_.empty()) return;
  for (auto& [id, keyboard] : keyboards_) {
    if (keyboard.physical.any()) continue;
    if (keyboard.grabbed && !wantsGrab()) letGo(id, keyboard);
    if (keyboard.grabbed || !wantsGrab() || now < grabDue(keyboard)) continue;
    if (!tryGrab(id, keyboard)) {
      setAvailable(false, now);
      return;
    }
  }
}

/// False when another program holds the keyboard.
bool Filter::tryGrab(KeyboardId id, Keyboard& keyboard) {
  const auto result = actions_.grab(id);
  keyboard.grabbed = result.outcome == GrabOutcome::grabbed;
  keyboard.grabbedAt = result.at;
  return result.outcome != GrabOutcome::busy;
}

/// Finds out whether the keyboards could be held, by holding each for an instant.
void Filter::probe(Moment now) {
  bool busy = false;
  for (auto& [id, keyboard] : keyboards_) {
    if (keyboard.grabbed || keyboard.physical.any()) continue;
    busy = !tryGrab(id, keyboard) || busy;
    letGo(id, keyboard);
  }
  setAvailable(!busy, now);
}

void Filter::setAvailable(bool available, Moment now) {
  retryAt_ = now + retryTime;
  if (available == available_) return;
  available_ = available;
  wantedSince_ = now;
  actions_.send(Availability{available ? Listening::possible : Listening::keyboardTaken});
  if (available) {
    updateGrabs(now);
    return;
  }
  for (auto& [id, keyboard] : keyboards_) letGo(id, keyboard);
}

void Filter::announce(Moment now) {
  available_ = true;
  probe(now);
  if (available_) actions_.send(Availability{Listening::possible});
}

void Filter::advance(Moment now) {
  if (answerDue_ && now >= *answerDue_) giveUpQuestion(now);
  if (!available_ && !keyboards_.empty() && now >= retryAt_) probe(now);
  updateGrabs(now);
}

std::optional<Moment> Filter::nextDeadline() const {
  std::optional<Moment> next = answerDue_;
  const auto consider = [&next](Moment due) { next = next ? std::min(*next, due) : due; };
  if (!available_ && !keyboards_.empty()) consider(retryAt_);
  if (wantsGrab() && queue_.empty()) {
    for (const auto& [id, keyboard] : keyboards_) {
      if (!keyboard.grabbed && keyboard.physical.none()) consider(grabDue(keyboard));
    }
  }
  return next;
}

Modifiers Filter::modifiers() const {
  constexpr std::array<std::tuple<std::size_t, std::size_t, Modifiers>, 4> keys{{
      {KEY_LEFTSHIFT, KEY_RIGHTSHIFT, shift},
      {KEY_LEFTCTRL, KEY_RIGHTCTRL, control},
      {KEY_LEFTALT, KEY_RIGHTALT, alternate},
      {KEY_LEFTMETA, KEY_RIGHTMETA, command},
  }};
  unsigned held = 0;
  for (const auto& [id, keyboard] : keyboards_) {
    for (const auto& [left, right, bit] : keys) {
      if (keyboard.processed.test(left) || keyboard.processed.test(right)) held |= bit;
    }
  }
  return static_cast<Modifiers>(held);
}

}  // namespace vorrin::input_helper
