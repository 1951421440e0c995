namespace cpp PeerThrift

struct Call {
  1: required i32 object
  2: required i32 method
  3: required bool on
}

struct Result {
  1: required i32 code
  2: required i8 state
}

service Appliance {
  Result turn(1: Call call)
  list<Result> batch(1: list<Call> calls)
  binary fetch(1: i32 length)
  i32 store(1: binary data)
}
