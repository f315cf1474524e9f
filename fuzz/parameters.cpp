// Compares operations on a parameter with a model: a sorted vector that applies each rule by linear
// search. The input is a program: one byte per operation, followed by its operands.
#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/Fuzz.h"
#include "host/Kestova/KeyFrameException.h"
#include "host/Kestova/ThreadSafe.h"
#include "params/LeftParameter.h"
#include "params/TimeLimits.h"

namespace {

using Kestova::afterAllTimes;
using Kestova::beforeAllTimes;
using Kestova::int64;
using Kestova::KeyFrameException;
using Kestova::RationalTime;

// The text that an operation writes, or the exception that it throws.
template <class Action>
std::string resultOf(Action action) {
  std::ostringstream text;
  try {
    action(text);
  } catch (const KeyFrameException& refusal) {
    text.str("");
    text << "refused at " << refusal.time();
  } catch (const std::overflow_error&) {
    text.str("overflow");
  }
  return text.str();
}

struct Entry {
  RationalTime time;
  int value;
  RationalTime leadIn;
};

// The sign of time - (later - earlier). Exact for 64-bit numerators and denominators that divide
// 42, as those of `takeTime` and their sums do.
int compare(const RationalTime& time, const RationalTime& later, const RationalTime& earlier) {
  using Kestova::int128;
  const auto scaled = [&](const RationalTime& number) {
    const int64 scale = time.denominator() * later.denominator() * earlier.denominator();
    return int128{number.numerator()} * (scale / number.denominator());
  };
  const int128 difference = scaled(time) - scaled(later) + scaled(earlier);
  return (difference > 0) - (difference < 0);
}

class Model {
 public:
  const Entry* at(const RationalTime& time) const {
    for (const Entry& entry : m_entries) {
      if (entry.time == time) return &entry;
    }
    return nullptr;
  }

  const Entry* before(const RationalTime& time) const {
    const Entry* found = nullptr;
    for (const Entry& entry : m_entries) {
      if (entry.time < time) found = &entry;
    }
    return found;
  }

  const Entry* after(const RationalTime& time) const {
    for (const Entry& entry : m_entries) {
      if (time < entry.time) return &entry;
    }
    return nullptr;
  }

  bool leadInFits(const RationalTime& time, const RationalTime& leadIn) const {
    const Entry* const previous = before(time);
    return compare(previous != nullptr ? previous->time : beforeAllTimes(), time, leadIn) <= 0;
  }

  bool canAdd(const RationalTime& time, const RationalTime& leadIn) const {
    const Entry* const next = after(time);
    const bool isInside = next != nullptr && compare(time, next->time, next->leadIn) > 0;
    return at(time) == nullptr && !isInside && leadInFits(time, leadIn);
  }

  void add(const Entry& entry) {
    if (!canAdd(entry.time, entry.leadIn)) throw KeyFrameException(entry.time, "");
    insert(entry);
  }

  Entry remove(const RationalTime& time) {
    const Entry removed = existing(time);
    m_entries.erase(m_entries.begin() + (&existing(time) - m_entries.data()));
    return removed;
  }

  void move(const RationalTime& from, const RationalTime& to) {
    const Entry moving = existing(from);
    if (at(to) != nullptr) throw KeyFrameException(to, "");
    Model others = *this;
    if (from != afterAllTimes()) others.remove(from);  // there it is its own neighbour
    if (!others.canAdd(to, moving.leadIn)) throw KeyFrameException(to, "");
    remove(from);
    insert({to, moving.value, moving.leadIn});
  }

  void shift(const RationalTime& offset, int64 divisor) {
    std::vector<Entry> moved;
    for (const Entry& entry : std::vector<Entry>(m_entries)) {
      const bool isVisible = entry.time != afterAllTimes();
      if (isVisible && entry.time.numerator() % divisor == 0) moved.push_back(remove(entry.time));
    }
    for (const Entry& entry : moved) add({entry.time + offset, entry.value, entry.leadIn});
  }

  Entry& existing(const RationalTime& time) {
    const Entry* const found = at(time);
    if (found == nullptr) throw KeyFrameException(time, "");
    return m_entries[static_cast<std::size_t>(found - m_entries.data())];
  }

  int setValue(int value, const RationalTime& time) {
    if (m_entries.empty()) {
      insert({time, value, RationalTime(0)});
      return 0;
    }
    const Entry* const written = before(time);
    return std::exchange(existing(written != nullptr ? written->time : m_entries[0].time).value,
                         value);
  }

  int valueAt(const RationalTime& time) const {
    if (m_entries.empty()) throw KeyFrameException(RationalTime(0), "");
    if (const Entry* const exact = at(time)) return exact->value;
    const Entry* const found = before(time);
    return found != nullptr ? found->value : m_entries[0].value;
  }

  const std::vector<Entry>& entries() const { return m_entries; }

 private:
  void insert(const Entry& entry) {
    auto next = m_entries.begin();
    while (next != m_entries.end() && next->time < entry.time) ++next;
    m_entries.insert(next, entry);
  }

  std::vector<Entry> m_entries;
};

class Machine {
 public:
  explicit Machine(const fuzz::Input& input) : m_input(input) {}

  void run() {
    while (!m_input.isEmpty()) {
      step();
      compareAll();
    }
    compareCopies();
  }

 private:
  RationalTime takeTime() {
    static constexpr int64 kDenominators[] = {1, 1, 1, 2, 3, 7};
    const auto byte = m_input.take<std::uint8_t>();
    const std::uint8_t kind = m_input.take<std::uint8_t>() % 16;
    if (kind == 14) return RationalTime(beforeAllTimes().numerator() + byte % 8);
    if (kind == 15) return RationalTime(afterAllTimes().numerator() - byte % 8);
    return {static_cast<std::int8_t>(byte), kDenominators[kind % 6]};
  }

  RationalTime takeLeadIn() {
    return {m_input.take<std::uint8_t>() % 8, 1 + m_input.take<std::uint8_t>() % 2};
  }

  template <class OnParameter, class OnModel>
  void both(const char* what, OnParameter onParameter, OnModel onModel) {
    fuzz::require(resultOf(onParameter) == resultOf(onModel), what);
  }

  void step() {
    const auto operation = m_input.take<std::uint8_t>() % 9;
    const RationalTime time = takeTime();
    switch (operation) {
      case 0:
        return add(time);
      case 1:
        return both(
            "remove", [&](auto& out) { out << m_parameter->removeKeyFrame(time)->value(); },
            [&](auto& out) { out << m_model.remove(time).value; });
      case 2: {
        const RationalTime to = takeTime();
        return both(
            "move", [&](auto&) { m_parameter->moveKeyFrame(time, to); },
            [&](auto&) { m_model.move(time, to); });
      }
      case 3:
        return shift(time);
      case 4:
        return replace(time);
      case 5: {
        const int value = m_input.take<std::int16_t>();
        return both(
            "setKeyFrameValue",
            [&](auto& out) { out << m_parameter->setKeyFrameValue(time, value); },
            [&](auto& out) { out << std::exchange(m_model.existing(time).value, value); });
      }
      case 6: {
        const int value = m_input.take<std::int16_t>();
        return both(
            "setValue", [&](auto& out) { out << m_parameter->setValue(value, time); },
            [&](auto& out) { out << m_model.setValue(value, time); });
      }
      case 7:
        return setLeadIn(time);
      default:
        return query(time);
    }
  }

  void add(const RationalTime& time) {
    const RationalTime leadIn = takeLeadIn();
    const int value = m_input.take<std::int16_t>();
    both(
        "add", [&](auto&) { m_parameter->addKeyFrame(time, value, leadIn); },
        [&](auto&) {
          m_model.add({time, value, leadIn});
        });
  }

  void shift(const RationalTime& offset) {
    const int64 divisor = 1 + m_input.take<std::uint8_t>() % 4;
    both(
        "shift",
        [&](auto&) {
          m_parameter->shiftKeyFrames(offset, [divisor](const RationalTime& time) {
            return time.numerator() % divisor == 0;
          });
        },
        [&](auto&) { m_model.shift(offset, divisor); });
  }

  void replace(const RationalTime& time) {
    const RationalTime leadIn = takeLeadIn();
    const int value = m_input.take<std::int16_t>();
    const auto keyFrame =
        boost::make_shared<Kestova::KeyFrame<int>>(m_project, RationalTime(99), value, leadIn);
    both(
        "replace", [&](auto& out) { out << m_parameter->replaceKeyFrame(time, keyFrame)->value(); },
        [&](auto& out) {
          Entry& entry = m_model.existing(time);
          if (!m_model.leadInFits(time, leadIn)) throw KeyFrameException(time, "");
          out << entry.value;
          entry = {time, value, leadIn};
        });
  }

  void setLeadIn(const RationalTime& time) {
    const RationalTime leadIn = takeLeadIn();
    both(
        "setKeyFrameLeadInLength",
        [&](auto& out) { out << m_parameter->setKeyFrameLeadInLength(time, leadIn); },
        [&](auto& out) {
          Entry& entry = m_model.existing(time);
          if (!m_model.leadInFits(time, leadIn)) throw KeyFrameException(time, "");
          out << std::exchange(entry.leadIn, leadIn);
        });
  }

  void query(const RationalTime& time) {
    const RationalTime length = takeLeadIn();
    both(
        "valueAt", [&](auto& out) { out << m_parameter->valueAt(time); },
        [&](auto& out) { out << m_model.valueAt(time); });
    both(
        "neighbours",
        [&](auto& out) {
          out << m_parameter->previousKeyFrameTime(time) << " "
              << m_parameter->nextKeyFrameTime(time) << " " << m_parameter->keyFrameExists(time)
              << " " << m_parameter->canAddKeyFrame(time, length) << " "
              << m_parameter->hasKeyFrameIn({time, length});
        },
        [&](auto& out) {
          const Entry* const previous = m_model.before(time);
          const Entry* const next = m_model.after(time);
          const Entry* const exact = m_model.at(time);
          const Entry* const first = exact != nullptr ? exact : next;
          out << (previous != nullptr ? previous->time : beforeAllTimes()) << " "
              << (next != nullptr ? next->time : afterAllTimes()) << " " << (exact != nullptr)
              << " " << m_model.canAdd(time, length) << " "
              << (first != nullptr && compare(time, first->time, length) >= 0);
        });
  }

  void compareAll() {
    const auto times = m_parameter->keyFrameTimes();
    fuzz::require(
        times->size() == m_model.entries().size() && times->size() == m_parameter->numKeyFrames(),
        "both have the same number of keyframes");
    for (std::size_t index = 0; index < times->size(); ++index) {
      const Entry& entry = m_model.entries()[index];
      const auto keyFrame = m_parameter->keyFrameAt((*times)[index]);
      fuzz::require(keyFrame->time() == entry.time && keyFrame->value() == entry.value &&
                        keyFrame->leadInLength() == entry.leadIn,
                    "both have the same keyframes");
    }
  }

  void compareCopies() {
    if (m_parameter->numKeyFrames() == 0) return;
    const boost::shared_ptr<Kestova::LeftParameter<int>> copy(m_parameter->clone());
    fuzz::require(copy->isEquivalentTo(*m_parameter), "a copy is equivalent to its original");
    fuzz::require(textOf(*copy) == textOf(*m_parameter), "a copy is written like its original");
  }

  static std::string textOf(const Kestova::LeftParameter<int>& parameter) {
    return resultOf([&](auto& out) {
      Kestova::XMLOptions options(out);
      parameter.toXML(options, 0, "");
      parameter.toJSON(Kestova::JSONOptions(out), 0, "", "");
    });
  }

  fuzz::Input m_input;
  const boost::shared_ptr<Kestova::ThreadSafe> m_project =
      boost::make_shared<Kestova::ThreadSafe>();
  const boost::shared_ptr<Kestova::LeftParameter<int>> m_parameter =
      boost::make_shared<Kestova::LeftParameter<int>>(m_project, "fuzzed", nullptr);
  Model m_model;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMaxProgramSize = 2000;  // each operation compares all keyframes
  Machine(fuzz::Input(data, std::min(size, kMaxProgramSize))).run();
  return 0;
}
