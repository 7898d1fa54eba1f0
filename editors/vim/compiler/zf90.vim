" Vim compiler file: `:compiler zf90`, then `:make` checks the current file and fills the quickfix list. Options
" go behind it: `:make -F`, `:make -I inc/`.
if exists('current_compiler')
  finish
endif
let current_compiler = 'zf90'

let s:cpo_save = &cpo
set cpo&vim

" Messages name a file without its folder: the first line printed tells Vim where they are.
CompilerSet makeprg=(cd\ %:p:h:S\ &&\ echo\ \"Entering\ directory\ '$(pwd)'\"\ &&\ zf90\ -n\ -M\ ./\ $*\ %:t:S)

" FILE (LINE:COLUMN) SEVERITY: TEXT. The column may be missing; a text that does not fit into 1000 columns goes on
" behind ten blanks. Other lines are left as they are.
CompilerSet errorformat=
      \%DEntering\ directory\ '%f',
      \%W%f\ (%\\s%#%l:%\\s%#%c)\ warning:\ %m,
      \%I%f\ (%\\s%#%l:%\\s%#%c)\ remark:\ \ %m,
      \%E%f\ (%\\s%#%l:%\\s%#%c)\ error:\ \ \ %m,
      \%E%f\ (%\\s%#%l:%\\s%#%c)\ %*[a-z]\ error:\ %m,
      \%W%f\ (%\\s%#%l)\ warning:\ %m,
      \%I%f\ (%\\s%#%l)\ remark:\ \ %m,
      \%E%f\ (%\\s%#%l)\ error:\ \ \ %m,
      \%E%f\ (%\\s%#%l)\ %*[a-z]\ error:\ %m,
      \%C\ \ \ \ \ \ \ \ \ \ %m

let &cpo = s:cpo_save
unlet s:cpo_save
