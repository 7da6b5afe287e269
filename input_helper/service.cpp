#include "input_helper/service.h"

#include <chrono>
#include <cstdlib>
#include <utility>

#include "input_helper/log.h"
#include "input_helper/protocol/packet_socket.h"
#include "input_helper/watchdog.h"

namespace vorrin::input_helper {

using helper_protocol::EndReason;

namespace {

constexpr std::chrono::seconds tickTime{1};
constexpr int idleLimitSeconds = 10;

/// A no, with its reason.
int refuseCall(sd_bus_message* call, const char* words) {
  return sd_bus_reply_method_errorf(call, "org.vorrin.InputHelper.Error.Refused", "%s", words);
}

}  // namespace

Service::Service(sd_event* loop, sd_bus* bus, Uinput& uinput, const Grants& grants)
    : loop_(loop),
      bus_(bus),
      uinput_(uinput),
      grants_(grants),
      tick_(Awaited::timer(loop, Priority::others, [this] { tick(); })) {
  hearSessions(
      bus, [this](const auto& path, const auto& change) { changeSession(path, change); },
      [this](bool isAsleep) {
        isAsleep_ = isAsleep;
        followHolder();
      });
  hearAuthority(bus, [this] { checkAgain(); });
  hearOwners(bus, [this](const std::string& name) { followOwner(name); });
  tick();
}

void Service::tick() {
  beat();
  sweep();
  tick_.setTime(std::chrono::steady_clock::now() + tickTime);
  idleSeconds_ = connection_ || !requests_.empty() ? 0 : idleSeconds_ + 1;
  if (idleSeconds_ > idleLimitSeconds) sd_event_exit(loop_, 0);
}

/// A connection that has ended goes only once nothing of it runs.
void Service::sweep() {
  if (connection_ && connection_->hasEnded()) connection_.reset();
}

int Service::take(sd_bus_message* call, Wish wish) {
  sweep();
  const auto caller = findCaller(call);
  if (!caller) return refuseCall(call, "nobody knows who this is");
  // To have less is not asked about.
  if (wish == Wish::takeBack) takeBack(*caller);
  if (wish == Wish::takeBack && caller->session) return store(call, *caller, Decision::refuse);
  if (wish == Wish::takeBack || wish == Wish::askEveryTime)
    return store(call, *caller, Decision::ask);
  const auto& session = caller->session;
  if (!session || !session->isAtFirstSeat() || !session->isInFront) {
    return refuseCall(call, "only a session in front at the first seat is served");
  }
  const bool isConnect = wish == Wish::connect;
  const auto decision = isConnect ? decisionOf(*caller) : Decision::ask;
  if (decision == Decision::refuse) return refuseCall(call, "its user took the permission back");
  if (isConnect && connection_ && holder_.session->path == session->path) {
    return refuseCall(call, "another program of this session has it");
  }
  if (requests_.contains(caller->name)) {
    return refuseCall(call, "an earlier call is not answered yet");
  }
  const auto request =
      std::make_shared<Request>(Request{Message(sd_bus_message_ref(call)), wish, *caller, {}});
  requests_[caller->name] = request;
  // What was allowed for good is not asked about.
  const bool mayAsk = sd_bus_message_get_allow_interactive_authorization(call) > 0;
  if (mayAsk && decision != Decision::allow) {
    request->question = "vorrin " + std::to_string(++questions_);
  }
  authorize(request);
  return 1;
}

void Service::authorize(const RequestPointer& request) {
  checkAuthorization(
      bus_, request->caller.name, request->wish == Wish::allow ? actions::allow : actions::connect,
      request->question,
      [this, weak = std::weak_ptr(request)](std::optional<Authorization> authorization) {
        const auto found = weak.lock();
        if (!found) return;
        found->question.clear();
        if (!authorization) return refuse(found, "polkit does not say whether it may");
        decide(found, *authorization);
      });
}

void Service::decide(const RequestPointer& request, const Authorization& authorization) {
  const bool isConnect = request->wish == Wish::connect;
  const bool isAllowed = isConnect && decisionOf(request->caller) == Decision::allow;
  if (!authorization.isGiven && !(authorization.wouldTakePassword && isAllowed)) {
    return refuse(request, "the permission was not given");
  }
  if (isConnect) return connect(request, isAllowed || !authorization.isTemporary);
  store(request->call.get(), request->caller, Decision::allow);
  forget(request);
}

void Service::connect(const RequestPointer& request, bool isStanding) {
  auto ends = helper_protocol::makeSocketPair();
  if (!ends) return refuse(request, "there is no memory for it");
  if (connection_) connection_->end(EndReason::replaced);
  connection_.emplace(loop_, std::move(ends->second), uinput_,
                      [this] { tick_.setTime(std::chrono::steady_clock::now()); });
  holder_ = request->caller;
  isStanding_ = isStanding;
  sd_bus_reply_method_return(request->call.get(), "h", ends->first.get());
  forget(request);
  followHolder();
}

void Service::takeBack(const Caller& caller) {
  if (connection_ && holder_.user == caller.user) connection_->end(EndReason::revoked);
  const auto requests = requests_;
  for (const auto& [name, request] : requests) {
    if (request->caller.user == caller.user) refuse(request, "its user took the permission back");
  }
}

int Service::store(sd_bus_message* call, const Caller& caller, Decision decision) {
  const bool isStored = grants_.store(
      caller.user, caller.session ? caller.session->userName : std::string(), decision);
  checkAgain();
  return isStored ? sd_bus_reply_method_return(call, nullptr)
                  : refuseCall(call, "the decision cannot be stored");
}

void Service::refuse(const RequestPointer& request, const char* words) {
  refuseCall(request->call.get(), words);
  forget(request);
}

void Service::forget(const RequestPointer& request) {
  if (!request->question.empty()) cancelCheck(bus_, request->question);
  const auto found = requests_.find(request->caller.name);
  if (found != requests_.end() && found->second == request) requests_.erase(found);
}

Decision Service::decisionOf(const Caller& caller) const {
  return grants_.of(caller.user, caller.session->userName);
}

void Service::checkAgain() {
  if (!connection_) return;
  checkAuthorization(
      bus_, holder_.name, actions::connect, {},
      [this, name = holder_.name](std::optional<Authorization> authorization) {
        if (!connection_ || holder_.name != name) return;
        const bool isAllowed = decisionOf(holder_) == Decision::allow;
        // What was given once, after a question, ends by itself after some minutes; that takes
        // nothing back. A rule or a decision that is gone does, and so does a no.
        const bool holds =
            authorization && (authorization->isGiven ||
                              (authorization->wouldTakePassword && (isAllowed || !isStanding_)));
        if (!holds) return connection_->end(EndReason::revoked);
        isStanding_ = isAllowed || (authorization->isGiven && !authorization->isTemporary);
      });
}

void Service::changeSession(const std::string& path, const std::function<void(Session&)>& change) {
  if (connection_ && holder_.session->path == path) {
    change(*holder_.session);
    followHolder();
  }
  const auto requests = requests_;
  for (const auto& [name, request] : requests) {
    auto& session = request->caller.session;
    if (!session || session->path != path) continue;
    change(*session);
    if (!session->isInFront) refuse(request, "its session is not in front any more");
  }
}

/// A session that is gone has no path any more.
void Service::followHolder() {
  if (!connection_) return;
  const auto& session = *holder_.session;
  if (session.path.empty()) return connection_->end(EndReason::revoked);
  connection_->setAtWork(session.isInFront && !session.isLocked && !session.wasAskedToLock &&
                         !isAsleep_);
}

void Service::followOwner(const std::string& name) {
  if (connection_ && (name == holder_.name || name == loginManagerName)) {
    connection_->end(EndReason::revoked);
  }
  if (name == authorityName) checkAgain();
  const auto request = requests_.find(name);
  if (request != requests_.end()) forget(RequestPointer(request->second));
}

namespace {

template <Service::Wish wish>
int takeCall(sd_bus_message* call, void* service, sd_bus_error*) {
  return static_cast<Service*>(service)->take(call, wish);
}

constexpr sd_bus_vtable methods[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD(helper_protocol::connectMethod, "", "h", takeCall<Service::Wish::connect>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("AllowForGood", "", "", takeCall<Service::Wish::allow>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("AskEveryTime", "", "", takeCall<Service::Wish::askEveryTime>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("TakeBack", "", "", takeCall<Service::Wish::takeBack>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

}  // namespace

int serve(Uinput& uinput, const char* decisions) {
  constexpr const char* name = "org.vorrin.InputHelper";
  const Grants grants(decisions);
  sd_event* loop = nullptr;
  sd_bus* bus = nullptr;
  if (sd_event_new(&loop) < 0 || sd_bus_open_system(&bus) < 0) {
    log("there is no system bus");
    return EXIT_FAILURE;
  }
  // Without the bus nobody can say whom it may serve.
  sd_bus_set_exit_on_disconnect(bus, 1);
  sd_bus_attach_event(bus, loop, static_cast<int>(Priority::others));
  Service service(loop, bus, uinput, grants);
  sd_bus_add_object_vtable(bus, nullptr, "/org/vorrin/InputHelper", name, methods, &service);
  sd_bus_request_name_async(bus, nullptr, name, 0, nullptr, nullptr);
  return sd_event_loop(loop) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace vorrin::input_helper
