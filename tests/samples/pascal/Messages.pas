{ Stands in for the Messages unit: see Windows.pas. }
unit Messages;

interface

const
  WM_DESTROY = $0002;
  WM_COPYDATA = $004A;
  WM_USER = $0400;

implementation

end.
