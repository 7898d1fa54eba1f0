! What the programs need to know of the library's routines.
module graph_interfaces
  implicit none

  integer, parameter :: weight = kind(1.0d0)

  interface
     subroutine gstar(n, m, ia, ib, wa, first, to, w, ierr)
       integer, intent(in) :: n, m, ia(m), ib(m)
       double precision, intent(in) :: wa(m)
       integer, intent(out) :: first(n + 1), to(m)
       double precision, intent(out) :: w(m)
       integer, intent(out) :: ierr
     end subroutine gstar

     subroutine gshort(n, first, to, w, source, dist, pred, heap, pos)
       integer, intent(in) :: n, first(*), to(*), source
       double precision, intent(in) :: w(*)
       double precision, intent(out) :: dist(n)
       integer, intent(out) :: pred(n), heap(n), pos(n)
     end subroutine gshort

     subroutine gtree(n, m, ia, ib, wa, order, union, intree, total, *)
       integer, intent(in) :: n, m, ia(m), ib(m)
       double precision, intent(in) :: wa(m)
       integer, intent(out) :: order(m), union(n)
       logical, intent(out) :: intree(m)
       double precision, intent(out) :: total
     end subroutine gtree

     subroutine gtopo(n, first, to, indeg, seq, nseq)
       integer, intent(in) :: n, first(*), to(*)
       integer, intent(out) :: indeg(n), seq(n), nseq
     end subroutine gtopo

     subroutine gflow(n, ldc, cap, flow, s, t, value, queue, pred)
       integer, intent(in) :: n, ldc, cap(ldc, n), s, t
       integer, intent(out) :: flow(ldc, n), value, queue(n), pred(n)
     end subroutine gflow

     subroutine gcolor(n, first, to, color, ncol, choose)
       integer, intent(in) :: n, first(*), to(*)
       integer, intent(out) :: color(n), ncol
       interface
          integer function choose(k)
            integer, intent(in) :: k
          end function choose
       end interface
     end subroutine gcolor

     integer function gerrs(name)
       character(len=*), intent(out) :: name
     end function gerrs

     integer function gclear(name)
       character(len=*), intent(in) :: name
     end function gclear
  end interface

end module graph_interfaces
