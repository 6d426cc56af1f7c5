#include <afxdisp.h>
#include <afxwin.h>

#include <gtest/gtest.h>

namespace
{

template <typename Exception>
Exception* Thrown(void (*raise)())
{
    try
    {
        raise();
    }
    catch (CException* exception)
    {
        return dynamic_cast<Exception*>(exception);
    }
    return nullptr;
}

TEST(Exceptions, MemoryExceptionNeedsNoMemory)
{
    auto* first = Thrown<CMemoryException>(&AfxThrowMemoryException);
    ASSERT_NE(nullptr, first);
    first->Delete();
    // The one object is there again after its deletion.
    EXPECT_EQ(first, Thrown<CMemoryException>(&AfxThrowMemoryException));
}

TEST(Exceptions, InvalidArgumentIsItsOwnKind)
{
    auto* exception = Thrown<CInvalidArgException>(&AfxThrowInvalidArgException);
    ASSERT_NE(nullptr, exception);
    exception->Delete();
}

TEST(Exceptions, OleExceptionCarriesItsCode)
{
    auto* exception = Thrown<COleException>([] { AfxThrowOleException(E_INVALIDARG); });
    ASSERT_NE(nullptr, exception);
    EXPECT_EQ(E_INVALIDARG, exception->m_sc);
    exception->Delete();
}

} // namespace
