! Makes some pictures, treats them, and shows them as text.
program gallery
  use filters, only: smooth, find_edges, remove_specks, dither, equalise, flip, gauss, box
  use fractals
  use graymaps, only: graymap, read_pgm, write_pgm, histogram, white, dispose, show => print_picture, &
       & operator(.over.), operator(-), assignment(=)
  use raytracer, only: sphere, vector, render
  implicit none

  integer, parameter :: unit = 21, height = 14, width = 56
  type(graymap) :: scene, treated, fractal, basins, again
  type(sphere), dimension(3) :: balls
  integer :: status, k

  balls(1) = sphere(vector(0.0, 1.0, 0.0), 1.0, brightness_of(1), 0.3)
  balls(2) = sphere(vector(2.2, 0.7, -1.0), 0.7, brightness_of(2), 0.0)
  balls(3) = sphere(vector(-2.0, 0.8, 0.8), 0.8, 0.5, 0.7)
  call render(balls, scene, 56, 112)
  call heading('spheres')
  call show(scene, height, width)

  call find_edges(scene, treated, threshold=200.0)
  call heading('their edges')
  call show(image=treated, height=height, width=width)

  call escape_times(fractal, 48, 96, corner=(-2.2, -1.2), width=3.2)
  call heading('quadratic map')
  call show(fractal, height, width)
  do k = 1, 3
     call smooth(fractal, gauss)
  end do
  call equalise(fractal)
  treated = -fractal
  call heading('smoothed, equalised and negative')
  call show(treated, height, width)

  ! specks in, specks out
  again = scene
  again%pixel(5::11, 3::17) = white
  call remove_specks(again)
  treated = again - scene
  print '(A, 8I6)', ' left over by levels:', histogram(treated, 8)

  call newton_basins(basins, 48)
  call flip(basins, upside_down=.true.)
  again = basins.over.scene
  call smooth(again, box)
  call dither(again)
  call write_pgm(again, unit, 'gallery.pgm', status)
  if (status /= 0) stop 'cannot write'
  call dispose(again)
  call read_pgm(again, unit, 'gallery.pgm', status)
  if (status /= 0) stop 'cannot read'
  print '(1X, A, 2(1X, I4), " black ", I5, " white ", I5)', trim(again%title), &
       shape(again%pixel), count(again%pixel == 0), count(again%pixel == white)
  write (*, '(1X, "flake", 5F8.3)') (koch_length(k), k=0, 4)
  open (unit, file='gallery.pgm', status='old')
  close (unit, status='delete')

contains

  real function brightness_of(k)
    integer, intent(in) :: k
    brightness_of = 1.0 - 0.2*k
  end function brightness_of

  subroutine heading(text)
    character(len=*), intent(in) :: text

    write (*, '(/, 1X, A, /, 1X, A)') text, repeat('-', len(text))
  end subroutine heading

end program gallery
