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
    ASSERT_NE(first, nullptr);
    first->Delete();
    // The one object is there again after its deletion.
    EXPECT_EQ(Thrown<CMemoryException>(&AfxThrowMemoryException), first);
}

TEST(Exceptions, InvalidArgumentIsItsOwnKind)
{
    auto* exception = Thrown<CInvalidArgException>(&AfxThrowInvalidArgException);
    ASSERT_NE(exception, nullptr);
    exception->Delete();
}

TEST(Exceptions, OleExceptionCarriesItsCode)
{
    auto* exception = Thrown<COleException>([] { AfxThrowOleException(E_INVALIDARG); });
    ASSERT_NE(exception, nullptr);
    EXPECT_EQ(exception->m_sc, E_INVALIDARG);
    exception->Delete();
}

} // namespace
