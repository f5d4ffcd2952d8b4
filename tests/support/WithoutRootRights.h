#pragma once

/** While it exists, file permissions apply to this process even if root runs it. */
class WithoutRootRights
{
public:
    WithoutRootRights();
    ~WithoutRootRights();

private:
    static void setOverride(bool on);
};
