#pragma once

/** While it lives, file permissions bind this process even when root runs it. */
class WithoutRootRights
{
public:
    WithoutRootRights();
    ~WithoutRootRights();

private:
    static void setOverride(bool on);
};
