#include "input_helper/filter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vorrin::input_helper {

using namespace helper_protocol;

void Filter::addKeyboard(KeyboardId id, const KeySet& keysDown, Moment now) {
  Keyboard keyboard;
  keyboard.physical = keysDown;
  keyboard.processed = keysDown;
  keyboard.ready = now + startGap;
  keyboards_[id] = keyboard;
}

void Filter::removeKeyboard(KeyboardId id, Moment now) {
  const bool frontWaits = answerDue_ && queue_.front().keyboard == id;
  // Whoever holds a shortcut key of the lost keyboard must not hold it for ever.
  releaseAsked(keyboards_.at(id));
  if (frontWaits) {
    const auto& front = queue_.front();
    tell(front.events[front.next].code, false);
    answerDue_.reset();
  }
  std::erase_if(queue_, [id](const PendingFrame& frame) { return frame.keyboard == id; });
  keyboards_.erase(id);
  if (!answerDue_) process(now);
}

void Filter::receive(KeyboardId id, Frame frame, Moment made, Moment now) {
  Keyboard& keyboard = keyboards_.at(id);
  followKeys(frame, keyboard.physical);
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
  queue_.push_back({id, std::move(frame), !seenByAll, 0, {}});
  if (!answerDue_) process(now);
}

void Filter::removeAll() {
  enabled_ = false;
  queue_.clear();
  answerDue_.reset();
  verdict_.reset();
  keyboards_.clear();
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
  if (!isKey(event)) {
    if (goesOn(event)) frame.kept.push_back(event);
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
  const bool claimable = frame.filtered && enabled_ &&
                         (swallowable_ & shortcutSet(event.code)) != 0 && !modifierIsDown();
  if (claimable && !verdict_) {
    ask(event.code, now);
    return false;
  }
  const bool swallow = claimable && *verdict_;
  if (verdict_) keyboard.asked.set(event.code);
  verdict_.reset();
  keyboard.processed.set(event.code);
  if (event.code == escapeKey) tell(event.code, true);
  if (frame.filtered && !swallow) {
    keyboard.passed.set(event.code);
    frame.kept.push_back(event);
  }
  return true;
}

/// A repeat, too, goes where its press went.
void Filter::processRepeat(PendingFrame& frame, const Keyboard& keyboard, const InputEvent& event) {
  if (keyboard.asked.test(event.code) || event.code == escapeKey) tell(event.code, true, true);
  if (keyboard.passed.test(event.code)) frame.kept.push_back(event);
}

/// A release goes where its press went, whatever was decided since.
void Filter::processRelease(PendingFrame& frame, Keyboard& keyboard, const InputEvent& event) {
  keyboard.processed.reset(event.code);
  if (keyboard.asked.test(event.code) || event.code == escapeKey) tell(event.code, false);
  keyboard.asked.reset(event.code);
  if (!keyboard.passed.test(event.code)) return;
  keyboard.passed.reset(event.code);
  if (frame.filtered) {
    frame.kept.push_back(event);
  } else {
    actions_.emit(frame.keyboard, {&event, 1});
  }
}

void Filter::ask(std::uint16_t key, Moment now) {
  answerDue_ = now + answerLimit;
  actions_.send(KeyMoved{nextQuestion_++, key, 1, 0});
}

void Filter::tell(std::uint16_t key, bool down, bool repeated) {
  if (enabled_) actions_.send(KeyMoved{0, key, down, repeated});
}

void Filter::releaseAsked(Keyboard& keyboard) {
  for (const auto key : shortcutKeys) {
    if (keyboard.asked.test(key)) tell(key, false);
  }
  keyboard.asked.reset();
}

void Filter::answer(const Verdict& verdict, Moment now) {
  // The answer to an earlier question comes too late to count.
  if (!answerDue_ || verdict.question + 1 != nextQuestion_) return;
  answerDue_.reset();
  verdict_ = verdict.swallow != 0;
  process(now);
}

void Filter::configure(const Configure& configuration, Moment now) {
  enabled_ = configuration.enabled != 0;
  swallowable_ = configuration.keys;
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
  if (const auto releases = releasesOf(keyboard.passed); !releases.empty()) {
    actions_.emit(id, releases);
  }
  keyboard.passed.reset();
  keyboard.grabbed = false;
  keyboard.ungrabbedAt = actions_.ungrab(id);
}

bool Filter::wantsGrab() const {
  return enabled_ && available_ && swallowable_ != 0;
}

void Filter::updateGrabs(Moment now) {
  if (!queue_.empty()) return;
  for (auto& [id, keyboard] : keyboards_) {
    if (keyboard.physical.any()) continue;
    if (keyboard.grabbed && !wantsGrab()) letGo(id, keyboard);
    if (keyboard.grabbed || !wantsGrab() || now < keyboard.ready) continue;
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
      if (!keyboard.grabbed && keyboard.physical.none()) consider(keyboard.ready);
    }
  }
  return next;
}

bool Filter::modifierIsDown() const {
  constexpr std::array<std::size_t, 8> modifiers{KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL,
                                                 KEY_RIGHTCTRL, KEY_LEFTALT,    KEY_RIGHTALT,
                                                 KEY_LEFTMETA,  KEY_RIGHTMETA};
  return std::ranges::any_of(keyboards_, [&](const auto& entry) {
    return std::ranges::any_of(modifiers,
                               [&](std::size_t key) { return entry.second.processed.test(key); });
  });
}

}  // namespace vorrin::input_helper
