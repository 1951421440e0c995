@0xd6a1e3a3f3a0c5b1;

struct Call {
  object @0 :UInt32;
  method @1 :UInt32;
  on @2 :Bool;
}

struct Result {
  code @0 :Int32;
  state @1 :UInt8;
}

interface Appliance {
  turn @0 (call :Call) -> (result :Result);
  batch @1 (calls :List(Call)) -> (results :List(Result));
  fetch @2 (length :UInt32) -> (code :Int32, data :Data);
  store @3 (data :Data) -> (code :Int32);
}
