#pragma once

#include "countedvalues.h"

#include <observerbase/iobserver.h>
#include <valuecore/valueptr.h>

/// Observes one of the values of CountedValues and reads it at each change.
class CountedListener final : public IObserver
{
public:
    struct Heard
    {
        int changes = 0;
        double last = 0;
    };

    /// `heard` is shared by all listeners and outlives them.
    CountedListener(Tree* tree, const QString& path, Heard& heard)
        : m_heard(heard)
    {
        m_value.GetFromTree(path, tree);
    }

    void Update(Observable*, TChangeCode code) override
    {
        if (code == TChangeCode::ValueChanged) {
            ++m_heard.changes;
            m_heard.last = m_value->GetValue();
        }
    }

private:
    ValueObservingPtr<CountedValues::Number> m_value{this};
    Heard& m_heard;
};
