module real_kinds
   integer, parameter :: single = kind(0.0), double = kind(0.d0)
   integer, parameter :: wide = max(selected_real_kind(2*precision(0.0)), double)
end module real_kinds
