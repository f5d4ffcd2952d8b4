#pragma once

/** While it lives, this process can open no further file, and so start no program. */
class FewFiles
{
public:
    FewFiles();
    ~FewFiles();

private:
    unsigned long m_limit;
};
