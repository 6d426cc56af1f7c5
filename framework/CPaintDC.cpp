#include "CPaintDC.h"

#include "CWnd.h"

CPaintDC::CPaintDC(CWnd* window) : m_hWnd(window->m_hWnd)
{
    ::BeginPaint(m_hWnd, &m_ps);
}

CPaintDC::~CPaintDC()
{
    ::EndPaint(m_hWnd, &m_ps);
}
