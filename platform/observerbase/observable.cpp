#include <observerbase/observable.h>

#include <observerbase/iobserver.h>

#include <algorithm>
#include <vector>

// The list outlives the observable for as long as a notification walks it. While one walks, positions stand still:
// a removed observer leaves a null, a move to the front waits until the outermost walk has ended.
struct Observable::List
{
    std::vector<IObserver*> observers;
    std::vector<IObserver*> wantsFirst;
    int walks = 0;
    bool alive = true;

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
        std::erase(observers, nullptr);
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
    if (m_list) {
        m_list->alive = false;
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
    const std::shared_ptr<List> list = m_list;
    const std::size_t count = list->observers.size(); // who is added from here on waits for the next notification
    const List::Walk walk(*list);
    for (std::size_t i = 0; i < count && list->alive; ++i) {
        IObserver* const observer = list->observers[i];
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
