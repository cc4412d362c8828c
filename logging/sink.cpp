#include "base/strict_floating_point.h"

#include "logging/sink.h"

#include <ostream>
#include <utility>

#include "logging/record.h"
#include "logging/record_format.h"

namespace plog {

Sink::~Sink() = default;

StreamSink::StreamSink(std::ostream& stream) : stream_(&stream) {}

StreamSink::~StreamSink() = default;

void StreamSink::Write(const Record& record) {
  std::string text = FormatRecord(record);
  text += '\n';
  const std::lock_guard<std::mutex> lock(mutex_);
  if (stream_ == nullptr) return;
  stream_->write(text.data(), static_cast<std::streamsize>(text.size()));
  stream_->flush();
}

void StreamSink::Detach() {
  const std::lock_guard<std::mutex> lock(mutex_);
  stream_ = nullptr;
}

CallbackSink::CallbackSink(Callback callback) : callback_(std::move(callback)) {}

CallbackSink::~CallbackSink() = default;

void CallbackSink::Write(const Record& record) {
  if (callback_) callback_(record);
}

MemorySink::MemorySink() = default;

MemorySink::~MemorySink() = default;

void MemorySink::Write(const Record& record) {
  StoredRecord stored;
  stored.time = record.time;
  stored.level = record.level;
  stored.threadId = record.threadId;
  stored.line = record.line;
  if (record.function != nullptr) stored.function = record.function;
  if (record.file != nullptr) stored.file = record.file;
  stored.instanceId = record.instanceId;
  stored.tags = record.tags;
  stored.message = record.message.str();
  const std::lock_guard<std::mutex> lock(mutex_);
  records_.push_back(std::move(stored));
}

std::vector<StoredRecord> MemorySink::Records() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return records_;
}

std::size_t MemorySink::Count() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return records_.size();
}

void MemorySink::Clear() {
  const std::lock_guard<std::mutex> lock(mutex_);
  records_.clear();
}

}  // namespace plog
