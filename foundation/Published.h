#pragma once

#include <functional>
#include <utility>

namespace tessel {

/// A value that everybody may read, only its owner may change, and whose changes are told to an observer.
template <typename T, typename Owner>
class Published {
  public:
    /// The observer is the owner's, so that all of its properties share one.
    Published(const std::function<void()>& observer, T initial) :
        observer(observer),
        value(std::move(initial)) {}

    const T& operator()() const { return value; }

  private:
    friend Owner;

    Published& operator=(T changed) {
        if (value == changed) return *this;
        value = std::move(changed);
        notify();
        return *this;
    }

    /// Changes the value in place, for those that are too large to be compared.
    template <typename Change>
    void modify(Change change) {
        change(value);
        notify();
    }

    void notify() const {
        if (observer) observer();
    }

    const std::function<void()>& observer;
    T value;
};

}  // namespace tessel
