#import "platform/gnustep/download/curl_run_loop.h"

@interface QuorvaneCurlLoop (Internal)
- (void)watch:(curl_socket_t)socket for:(int)wanted;
- (void)setTimerMillis:(long)millis;
- (void)timerFired:(NSTimer*)fired;
- (void)endRunLoopsWait;
- (void)actOn:(curl_socket_t)socket events:(int)events;
@end

static int onSocket(CURL*, curl_socket_t socket, int wanted, void* loop, void*) {
  [static_cast<QuorvaneCurlLoop*>(loop) watch:socket
                                          for:wanted == CURL_POLL_REMOVE ? 0 : wanted];
  return 0;
}

static int onTimer(CURLM*, long millis, void* loop) {
  [static_cast<QuorvaneCurlLoop*>(loop) setTimerMillis:millis];
  return 0;
}

static void* descriptor(curl_socket_t socket) {
  return reinterpret_cast<void*>(static_cast<intptr_t>(socket));
}

@implementation QuorvaneCurlLoop

- (id)initWithLibrary:(const CurlLibrary*)library owner:(id<QuorvaneCurlLoopOwner>)loopOwner {
  self = [super init];
  if (self == nil) {
    return nil;
  }
  curl = library;
  owner = loopOwner;
  runLoop = [[NSRunLoop currentRunLoop] retain];
  sockets = new std::map<curl_socket_t, int>;
  multi = curl->multiInit();
  if (multi == nullptr) {
    [self release];
    return nil;
  }
  curl->multiSetopt(multi, CURLMOPT_SOCKETFUNCTION, &onSocket);
  curl->multiSetopt(multi, CURLMOPT_SOCKETDATA, self);
  curl->multiSetopt(multi, CURLMOPT_TIMERFUNCTION, &onTimer);
  curl->multiSetopt(multi, CURLMOPT_TIMERDATA, self);
  return self;
}

- (CURLM*)multi {
  return multi;
}

- (void)close {
  owner = nil;
  if (multi != nullptr) {
    curl->multiCleanup(multi);  // stops the watching of its connections
    multi = nullptr;
  }
  while (!sockets->empty()) {
    [self watch:sockets->begin()->first for:0];
  }
  [self setTimerMillis:-1];
}

- (void)dealloc {
  if (sockets != nullptr) {
    [self close];
  }
  delete sockets;
  [runLoop release];
  [super dealloc];
}

- (void)setWatched:(bool)watched socket:(curl_socket_t)socket type:(RunLoopEventType)type {
  if (watched) {
    [runLoop addEvent:descriptor(socket) type:type watcher:self forMode:NSDefaultRunLoopMode];
  } else {
    [runLoop removeEvent:descriptor(socket) type:type forMode:NSDefaultRunLoopMode all:YES];
  }
}

- (void)watch:(curl_socket_t)socket for:(int)wanted {
  const auto known = sockets->find(socket);
  const int changed = wanted ^ (known == sockets->end() ? 0 : known->second);
  if (changed & CURL_POLL_IN) {
    [self setWatched:(wanted & CURL_POLL_IN) != 0 socket:socket type:ET_RDESC];
  }
  if (changed & CURL_POLL_OUT) {
    [self setWatched:(wanted & CURL_POLL_OUT) != 0 socket:socket type:ET_WDESC];
  }
  if (wanted == 0) {
    sockets->erase(socket);
  } else {
    (*sockets)[socket] = wanted;
  }
}

- (void)setTimerMillis:(long)millis {
  [timer invalidate];
  timer = nil;
  if (millis < 0) {
    return;
  }
  timer = [NSTimer timerWithTimeInterval:static_cast<NSTimeInterval>(millis) / 1000
                                  target:self
                                selector:@selector(timerFired:)
                                userInfo:nil
                                 repeats:NO];
  [runLoop addTimer:timer forMode:NSDefaultRunLoopMode];
}

- (void)timerFired:(NSTimer*)fired {
  if (timer == fired) {
    timer = nil;  // the run loop is done with it
  }
  [self actOn:CURL_SOCKET_TIMEOUT events:0];
  [self endRunLoopsWait];
}

// The run loop keeps waiting after a timer has fired, which would delay notice of the transfer's
// end. It does not wait if another timer is due.
- (void)endRunLoopsWait {
  NSTimer* due = [NSTimer timerWithTimeInterval:0
                                         target:[NSNull null]
                                       selector:@selector(self)
                                       userInfo:nil
                                        repeats:NO];
  [runLoop addTimer:due forMode:NSDefaultRunLoopMode];
}

- (void)receivedEvent:(void*)data
                 type:(RunLoopEventType)type
                extra:(void*)extra
              forMode:(NSString*)mode {
  (void)extra;
  (void)mode;
  [self actOn:static_cast<curl_socket_t>(reinterpret_cast<intptr_t>(data))
       events:type == ET_WDESC ? CURL_CSELECT_OUT : CURL_CSELECT_IN];
}

- (void)actOn:(curl_socket_t)socket events:(int)events {
  [self retain];  // the owner may let go of this object
  int running = 0;
  if (multi != nullptr) {
    curl->multiSocketAction(multi, socket, events, &running);
    int waiting = 0;
    while (const CURLMsg* message = curl->multiInfoRead(multi, &waiting)) {
      [owner curlLoop:self handle:message->easy_handle didEndWith:message->data.result];
    }
  }
  [owner curlLoopDidTurn:self];
  [self release];
}

@end
