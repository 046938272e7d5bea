#include "crypto/hash_file.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>

#include "crypto/mixed_hash.h"
#include "crypto/sha256.h"
#include "crypto/sha3_256.h"
#include "crypto/tomcrypt.h"

// Pieces that this thread reads and the other one hashes after it, in turn. Piece n lies in place
// n % HASH_PIECES until it is hashed.
struct PieceQueue {
  pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t changed = PTHREAD_COND_INITIALIZER;
  size_t read = 0;
  size_t hashed = 0;
  bool isEnded = false;
  unsigned char* buffer = nullptr;
  size_t sizes[HASH_PIECES] = {};
  Hash_state* state = nullptr;
  int error = CRYPT_OK;  // the other thread's, until it has ended
};

class QueueGuard {
 public:
  explicit QueueGuard(PieceQueue* queue) : queue_(queue) { pthread_mutex_lock(&queue_->lock); }
  ~QueueGuard() { pthread_mutex_unlock(&queue_->lock); }
  QueueGuard(const QueueGuard&) = delete;
  QueueGuard& operator=(const QueueGuard&) = delete;

  void wait() { pthread_cond_wait(&queue_->changed, &queue_->lock); }
  void tell() { pthread_cond_broadcast(&queue_->changed); }

 private:
  PieceQueue* queue_;
};

static unsigned char* placeOf(const PieceQueue& queue, size_t piece) {
  return queue.buffer + piece % HASH_PIECES * HASH_PIECE_SIZE;
}

// Waits for a piece to hash. Returns false when all are hashed and no more will come.
static bool waitForPiece(PieceQueue* queue) {
  QueueGuard guard(queue);
  while (queue->hashed == queue->read && !queue->isEnded) {
    guard.wait();
  }
  return queue->hashed < queue->read;
}

static void noteHashed(PieceQueue* queue) {
  QueueGuard guard(queue);
  ++queue->hashed;
  guard.tell();
}

static void* hashSha256(void* argument) {
  auto* queue = static_cast<PieceQueue*>(argument);
  while (waitForPiece(queue)) {
    const size_t piece = queue->hashed;
    const int error = fastestSha256()->process(queue->state, placeOf(*queue, piece),
                                               queue->sizes[piece % HASH_PIECES]);
    queue->error = queue->error != CRYPT_OK ? queue->error : error;
    noteHashed(queue);
  }
  return nullptr;
}

static void waitForPlace(PieceQueue* queue) {
  QueueGuard guard(queue);
  while (queue->read - queue->hashed == HASH_PIECES) {
    guard.wait();
  }
}

static void handOver(PieceQueue* queue, size_t size) {
  QueueGuard guard(queue);
  queue->sizes[queue->read % HASH_PIECES] = size;
  ++queue->read;
  guard.tell();
}

static void endQueue(PieceQueue* queue) {
  QueueGuard guard(queue);
  queue->isEnded = true;
  guard.tell();
}

static size_t readPiece(FILE* file, unsigned char* place, long left) {
  return fread(place, 1, std::min(HASH_PIECE_SIZE, static_cast<size_t>(left)), file);
}

// Reads the pieces, hands each over and hashes it with Keccak. Returns Keccak's result.
static int readAndHashKeccak(FILE* file, long length, PieceQueue* queue, void (*progress)()) {
  int error = CRYPT_OK;
  size_t count = 1;
  for (long left = length; left > 0 && count > 0; left -= static_cast<long>(count)) {
    waitForPlace(queue);
    unsigned char* const place = placeOf(*queue, queue->read);
    count = readPiece(file, place, left);
    handOver(queue, count);
    const int result = sha3_256_process(queue->state, place, count);
    error = error != CRYPT_OK ? error : result;
    if (progress != nullptr) {
      progress();
    }
  }
  return error;
}

static bool hashOnOneThread(FILE* file, long length, unsigned char* buffer, Hash_state* state,
                            void (*progress)()) {
  size_t count = 1;
  for (long left = length; left > 0 && count > 0; left -= static_cast<long>(count)) {
    count = readPiece(file, buffer, left);
    if (!updateHash(state, buffer, static_cast<int>(count))) {
      return false;
    }
    if (progress != nullptr) {
      progress();
    }
  }
  return true;
}

bool hashFile(FILE* file, long length, unsigned char* buffer, Hash_state* state,
              void (*progress)()) {
  PieceQueue queue;
  queue.buffer = buffer;
  queue.state = state;
  pthread_t thread;
  // A file of one piece is hashed before a thread has begun.
  if (length <= static_cast<long>(HASH_PIECE_SIZE) || sysconf(_SC_NPROCESSORS_ONLN) < 2 ||
      pthread_create(&thread, nullptr, hashSha256, &queue) != 0) {
    return hashOnOneThread(file, length, buffer, state, progress);
  }
  const int error = readAndHashKeccak(file, length, &queue, progress);
  endQueue(&queue);
  pthread_join(thread, nullptr);
  return error == CRYPT_OK && queue.error == CRYPT_OK;
}
