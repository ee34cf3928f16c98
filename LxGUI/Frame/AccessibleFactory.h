#pragma once

#include <QtGui/QAccessible>

/// Makes interfaces for assistive technology, until the library is unloaded. Of static storage.
class AccessibleFactory
{
public:
    explicit AccessibleFactory(QAccessible::InterfaceFactory aFactory) : mFactory(aFactory)
    {
        QAccessible::installFactory(mFactory);
    }
    ~AccessibleFactory() { QAccessible::removeFactory(mFactory); }
    AccessibleFactory(const AccessibleFactory &) = delete;
    AccessibleFactory &operator=(const AccessibleFactory &) = delete;

private:
    const QAccessible::InterfaceFactory mFactory;
};
