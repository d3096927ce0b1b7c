#include <observerbase/observable.h>

#include <observerbase/iobserver.h>

#include <algorithm>
#include <utility>
#include <vector>

// While a notification walks the list, positions stand still: a removed observer leaves a gap, a move to the front
// waits until the outermost walk has ended. The list of an observable that dies meanwhile belongs to itself until then:
// a copy of the pointer in each walk would do the same, but counting it would take a fifth of the time of a
// notification.
struct Observable::List
{
    std::vector<IObserver*> observers; // null where a gap is
    std::vector<IObserver*> wantsFirst;
    std::shared_ptr<List> orphan; // this list itself, once the observable is gone
    int walks = 0;
    bool hasGaps = false;

    auto find(const IObserver* observer) { return std::find(observers.begin(), observers.end(), observer); }

    void moveToFront(IObserver* observer)
    {
        if (const auto found = find(observer); found != observers.end()) {
            std::rotate(observers.begin(), found, found + 1);
        }
    }

    // Also when an observer throws: otherwise the list would stay frozen for good.
    class Walk
    {
    public:
        explicit Walk(List& list)
            : m_list(list)
        {
            ++m_list.walks;
        }
        ~Walk()
        {
            if (--m_list.walks == 0) {
                const std::shared_ptr<List> goesNow = std::move(m_list.orphan);
                m_list.settle();
            }
        }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;

    private:
        List& m_list;
    };

    void settle()
    {
        if (std::exchange(hasGaps, false)) {
            std::erase(observers, nullptr);
        }
        for (IObserver* observer : wantsFirst) {
            moveToFront(observer);
        }
        wantsFirst.clear();
    }
};

Observable::Observable() = default;

Observable::Observable(const Observable&)
    : Observable()
{}

// Observers belong to the object and not to its content: nothing is assigned.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
Observable& Observable::operator=(const Observable&)
{
    return *this;
}

Observable::~Observable()
{
    if (m_list && m_list->walks > 0) {
        List& list = *m_list;
        list.orphan = std::move(m_list);
    }
}

void Observable::AddObserver(IObserver* observer)
{
    if (!observer) {
        return;
    }
    if (!m_list) {
        m_list = std::make_shared<List>();
    }
    if (m_list->find(observer) == m_list->observers.end()) {
        m_list->observers.push_back(observer);
    }
}

void Observable::DeleteObserver(IObserver* observer)
{
    if (!m_list || !observer) {
        return;
    }
    std::erase(m_list->wantsFirst, observer);
    const auto found = m_list->find(observer);
    if (found == m_list->observers.end()) {
        return;
    }
    if (m_list->walks > 0) {
        *found = nullptr;
        m_list->hasGaps = true;
    } else {
        m_list->observers.erase(found);
    }
}

void Observable::DeleteObservers()
{
    if (!m_list) {
        return;
    }
    m_list->wantsFirst.clear();
    if (m_list->walks > 0) {
        std::fill(m_list->observers.begin(), m_list->observers.end(), nullptr);
        m_list->hasGaps = true;
    } else {
        m_list->observers.clear();
    }
}

void Observable::MakeFirstObserver(IObserver* observer)
{
    if (!m_list || !observer || m_list->find(observer) == m_list->observers.end()) {
        return;
    }
    if (m_list->walks > 0) {
        m_list->wantsFirst.push_back(observer);
    } else {
        m_list->moveToFront(observer);
    }
}

void Observable::NotifyObservers(TChangeCode code, IObserver* origin)
{
    if (!m_list || m_list->observers.empty()) {
        return;
    }
    List& list = *m_list;
    const std::size_t count = list.observers.size(); // who is added from here on waits for the next notification
    const List::Walk walk(list);
    for (std::size_t i = 0; i < count && !list.orphan; ++i) {
        IObserver* const observer = list.observers[i];
        if (observer && observer != origin) {
            observer->Update(this, code);
        }
    }
}

std::size_t Observable::ObserverCount() const
{
    return m_list
               ? m_list->observers.size() -
                     static_cast<std::size_t>(std::count(m_list->observers.begin(), m_list->observers.end(), nullptr))
               : 0;
}
